#pragma once

#include <QColor>
#include <QQuickPaintedItem>

#include "wave/TimeScale.h"

/// The strip of times below a wave. [main]
class WaveRuler : public QQuickPaintedItem {
    Q_OBJECT

  public:
    static constexpr double kHeight = 18;  // points

    explicit WaveRuler(QQuickItem* parent);

    /// @param rate  frames per second
    void show(const WaveViewport& viewport, double rate);
    void setColours(const QColor& ground, const QColor& line, const QColor& label);
    void paint(QPainter* painter) override;

  private:
    WaveViewport m_viewport;
    double m_rate = 44100;
    QColor m_line;
    QColor m_label;
};
