#include "bubbles/SimpleGradientLayer.h"

#include <QColor>
#include <QLinearGradient>
#include <QPainter>

SimpleGradientLayer::SimpleGradientLayer(QSizeF size, QQuickItem* parent)
    : SimpleGradientLayer(parent) {
    setSize(size);
    m_b = {0, size.height()};
}

SimpleGradientLayer::SimpleGradientLayer(QQuickItem* parent) : QQuickPaintedItem(parent) {}

void SimpleGradientLayer::setBackgroundGradient(const QGradientStops& gradient) {
    m_gradient = gradient;
    Q_EMIT gradientChanged();
    update();
}

void SimpleGradientLayer::setA(QPointF a) {
    m_a = a;
    Q_EMIT endsChanged();
    update();
}

void SimpleGradientLayer::setB(QPointF b) {
    m_b = b;
    m_bGiven = true;
    Q_EMIT endsChanged();
    update();
}

void SimpleGradientLayer::componentComplete() {
    QQuickPaintedItem::componentComplete();
    if (!m_bGiven)
        m_b = {0, height()};
}

QVariantList SimpleGradientLayer::gradientPairs() const {
    QVariantList pairs;
    for (const auto& [location, colour] : m_gradient)
        pairs.append(QVariant(QVariantList{location, colour}));
    return pairs;
}

void SimpleGradientLayer::setGradientPairs(const QVariantList& pairs) {
    QGradientStops stops;
    for (const QVariant& pair : pairs) {
        const QVariantList both = pair.toList();
        if (both.size() == 2)
            stops.append({both[0].toReal(), both[1].value<QColor>()});
    }
    setBackgroundGradient(stops);
}

void SimpleGradientLayer::paint(QPainter* painter) {
    if (m_gradient.isEmpty() || m_a == m_b)
        return;
    QLinearGradient gradient(m_a, m_b);
    gradient.setStops(m_gradient);
    painter->fillRect(boundingRect(), gradient);
}
