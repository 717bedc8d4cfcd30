#include "wave/WaveRuler.h"

#include <QFontMetricsF>
#include <QPainter>
#include <cmath>

namespace {

constexpr int kLetters = 11;       // pixels of the type
constexpr double kGap = 24;        // points between two labels at least
constexpr double kBesideMark = 4;  // points from a mark to its label
constexpr double kLongMark = 6;    // points
constexpr double kShortMark = 3;

QFont letters() {
    QFont font("Lato");
    font.setPixelSize(kLetters);
    return font;
}

}  // namespace

WaveRuler::WaveRuler(QQuickItem* parent) : QQuickPaintedItem(parent) {
    setOpaquePainting(true);
}

void WaveRuler::show(const WaveViewport& viewport, double rate) {
    m_viewport = viewport;
    m_rate = rate;
    update();
}

void WaveRuler::setColours(const QColor& ground, const QColor& line, const QColor& label) {
    setFillColor(ground);
    m_line = line;
    m_label = label;
    update();
}

void WaveRuler::paint(QPainter* painter) {
    painter->fillRect(QRectF(0, 0, width(), 1), m_line);
    if (m_rate <= 0)
        return;
    const QFont font = letters();
    const QFontMetricsF metrics(font);
    const auto widthOf = [&](const QString& label) {
        return metrics.horizontalAdvance(label) + kGap;
    };
    painter->setFont(font);
    painter->setPen(m_label);
    const double baseline = height() - 5;
    for (const TimeScale::Mark& mark : TimeScale(m_rate).marks(m_viewport, widthOf)) {
        const double x = std::floor(mark.x);
        const bool labelled = !mark.label.isEmpty();
        painter->fillRect(QRectF(x, 0, 1, labelled ? kLongMark : kShortMark), m_label);
        if (labelled)
            painter->drawText(QPointF(x + kBesideMark, baseline), mark.label);
    }
}
