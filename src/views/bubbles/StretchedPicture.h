#pragma once

#include <QQuickItem>

/// A picture of the artwork stretched over the item: its left cap and what is right of the one
/// point beside it keep their width, that point and the whole height stretch. [main]
class StretchedPicture : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString name READ name WRITE setName NOTIFY nameChanged)
    Q_PROPERTY(int leftCap READ leftCap WRITE setLeftCap NOTIFY leftCapChanged)

  public:
    explicit StretchedPicture(QQuickItem* parent = nullptr);

    /// "roundrect-shadow.png"; nothing is drawn where there is no such picture.
    QString name() const { return m_name; }
    void setName(const QString& name);
    /// In points.
    int leftCap() const { return m_leftCap; }
    void setLeftCap(int points);

  Q_SIGNALS:
    void nameChanged();
    void leftCapChanged();

  protected:
    QSGNode* updatePaintNode(QSGNode* old, UpdatePaintNodeData* data) override;
    void itemChange(ItemChange change, const ItemChangeData& value) override;

  private:
    void reload();

    QString m_name;
    int m_leftCap = 0;
    bool m_reload = true;
};
