#pragma once

#include <QGradient>
#include <QQuickPaintedItem>

/// A linear gradient from `a` to `b`, in the item's coordinates; beyond them its end colours go on.
/// From QML, stops are pairs: `gradient: [[0, "white"], [1, "black"]]`. [main]
class SimpleGradientLayer : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(
        QVariantList gradient READ gradientPairs WRITE setGradientPairs NOTIFY gradientChanged)
    Q_PROPERTY(QPointF a READ a WRITE setA NOTIFY endsChanged)
    Q_PROPERTY(QPointF b READ b WRITE setB NOTIFY endsChanged)

  public:
    /// `b` is at the bottom of that size.
    explicit SimpleGradientLayer(QSizeF size, QQuickItem* parent = nullptr);
    /// Made by QML: `b` is at the bottom of the size with which it is made, unless it is given.
    explicit SimpleGradientLayer(QQuickItem* parent = nullptr);

    const QGradientStops& gradient() const { return m_gradient; }
    void setBackgroundGradient(const QGradientStops& gradient);
    QPointF a() const { return m_a; }
    void setA(QPointF a);
    QPointF b() const { return m_b; }
    void setB(QPointF b);

    void paint(QPainter* painter) override;

  Q_SIGNALS:
    void gradientChanged();
    void endsChanged();

  protected:
    void componentComplete() override;

  private:
    QVariantList gradientPairs() const;
    void setGradientPairs(const QVariantList& pairs);

    QGradientStops m_gradient;
    QPointF m_a;
    QPointF m_b;
    bool m_bGiven = false;
};
