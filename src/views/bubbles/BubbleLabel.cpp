#include "bubbles/BubbleLabel.h"

#include <QFontMetricsF>
#include <QPainter>
#include <cmath>

namespace {

constexpr int kButtonFontSize = 18;
constexpr QPointF kLetterShadow{0, -1};
const QColor kShadow(0, 0, 0, 128);

}  // namespace

BubbleLabel::BubbleLabel(QQuickItem* parent) : QQuickPaintedItem(parent), m_font("Lato") {
    m_font.setPixelSize(kButtonFontSize);
    m_font.setBold(true);
}

void BubbleLabel::setText(const QString& text) {
    if (text == m_text)
        return;
    m_text = text;
    Q_EMIT textChanged();
    update();
}

void BubbleLabel::sizeToFit() {
    const QFontMetricsF metrics(m_font);
    setSize({std::ceil(metrics.horizontalAdvance(m_text)), std::ceil(metrics.height())});
}

void BubbleLabel::paint(QPainter* painter) {
    const QString shown = QFontMetricsF(m_font).elidedText(m_text, Qt::ElideRight, width());
    painter->setFont(m_font);
    painter->setPen(kShadow);
    painter->drawText(boundingRect().translated(kLetterShadow), Qt::AlignCenter, shown);
    painter->setPen(Qt::white);
    painter->drawText(boundingRect(), Qt::AlignCenter, shown);
}
