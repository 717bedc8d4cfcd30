#pragma once

#include <QPainter>
#include <QSizeF>
#include <QString>

#include "envelope/OutlinedText.h"

/// One segment of an envelope's graph, from one level to another. In points of a view of `size`,
/// whose bottom is level 0 and whose top is level 1. A segment with a position or a level that is
/// not finite draws nothing. [main]
struct ADSRSegment {
    float from;
    float to;
    float x;
    float width;
    QSizeF size;

    /// One bar, a point wide, each three points of the view, in the painter's brush. The first may
    /// begin up to three points before the segment.
    void drawBars(QPainter& painter) const;
    /// From level to level in the painter's pen.
    void drawLine(QPainter& painter) const;
    /// Both centred, unless the value is not narrower than the segment. A label with "S" in its
    /// middle also gets arrows up and down.
    void drawTexts(const QString& label, const QString& value, OutlinedText& texts,
                   QPainter& painter) const;

  private:
    bool canBeDrawn() const;
    /// The text's top is at that share of the height.
    QPointF centred(const QString& text, float share, OutlinedText& texts) const;
};
