#pragma once

#include <QQuickItem>
#include <QString>

/// A picture of the artwork at the size that it is drawn for, or stretched to the item's. It stays
/// sharp on every screen, and where the whole scene is scaled. [main]
class Picture : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    /// "record.png"; empty: none.
    Q_PROPERTY(QString name READ name WRITE setName NOTIFY nameChanged)

  public:
    explicit Picture(QQuickItem* parent = nullptr);

    QString name() const { return m_name; }
    void setName(const QString& name);

  Q_SIGNALS:
    void nameChanged();

  protected:
    QSGNode* updatePaintNode(QSGNode* old, UpdatePaintNodeData* data) override;
    void geometryChange(const QRectF& now, const QRectF& before) override;
    void itemChange(ItemChange change, const ItemChangeData& value) override;

  private:
    /// Pixels for each point.
    qreal pixels() const;
    void redraw();

    QString m_name;
    qreal m_drawnPixels = 0;  // 0: to be drawn anew
    QMetaObject::Connection m_windowResized;
};
