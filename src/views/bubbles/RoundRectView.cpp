#include "bubbles/RoundRectView.h"

#include <QPainter>

void RoundRectView::setFillColour(const QColor& colour) {
    if (colour == m_fillColour)
        return;
    m_fillColour = colour;
    Q_EMIT fillColourChanged();
    update();
}

void RoundRectView::setBorderRadius(float radius) {
    if (radius == m_borderRadius)
        return;
    m_borderRadius = radius;
    Q_EMIT borderRadiusChanged();
    update();
}

void RoundRectView::paint(QPainter* painter) {
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(Qt::NoPen);
    painter->setBrush(m_fillColour);
    painter->drawRoundedRect(boundingRect(), m_borderRadius, m_borderRadius);
}
