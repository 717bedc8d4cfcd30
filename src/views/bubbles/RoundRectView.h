#pragma once

#include <QColor>
#include <QQuickPaintedItem>

/// A filled rounded rectangle, as large as the item. [main]
class RoundRectView : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QColor fillColour READ fillColour WRITE setFillColour NOTIFY fillColourChanged)
    Q_PROPERTY(
        float borderRadius READ borderRadius WRITE setBorderRadius NOTIFY borderRadiusChanged)

  public:
    explicit RoundRectView(QQuickItem* parent = nullptr) : QQuickPaintedItem(parent) {}

    QColor fillColour() const { return m_fillColour; }
    void setFillColour(const QColor& colour);
    /// Of the corners, in points.
    float borderRadius() const { return m_borderRadius; }
    void setBorderRadius(float radius);

    void paint(QPainter* painter) override;

  Q_SIGNALS:
    void fillColourChanged();
    void borderRadiusChanged();

  private:
    QColor m_fillColour = Qt::black;
    float m_borderRadius = 0;
};
