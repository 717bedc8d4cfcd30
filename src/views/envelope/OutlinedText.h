#pragma once

#include <QFont>
#include <QFontMetricsF>
#include <QHash>
#include <QPainter>
#include <QPainterPath>
#include <QString>

/// Short texts of one font with a dark edge around their letters, for values that change with every
/// frame: the shape of a letter and of its edge are made once. Letters are not kerned. [main]
class OutlinedText {
  public:
    explicit OutlinedText(const QFont& font) : m_font(font) {}

    /// Points.
    double width(const QString& text);
    /// From a text's top to its base line, points.
    double ascent() const { return QFontMetricsF(m_font).ascent(); }
    /// `at` is the left end of the text's base line.
    void draw(const QString& text, QPointF at, const QColor& colour, QPainter& painter);

  private:
    struct Letter {
        double advance;
        QPainterPath shape;
        QPainterPath edge;
    };
    const Letter& letter(QChar character);

    QFont m_font;
    QHash<QChar, Letter> m_letters;
};
