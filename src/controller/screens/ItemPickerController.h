#pragma once

#include <QAbstractListModel>
#include <QVariant>

/// Who is told what was chosen.
class ItemPickerDelegate {
  public:
    virtual ~ItemPickerDelegate() = default;
    virtual void itemPicked(const QVariant& item, int index, const QString& forSource) = 0;
};

/// A plain list to choose one item from: the presets, the grain modes. It does not close itself.
/// [main]
class ItemPickerController : public QAbstractListModel {
    Q_OBJECT
    Q_PROPERTY(QString title READ title CONSTANT)
    Q_PROPERTY(QString source READ source CONSTANT)

  public:
    struct Item {
        QVariant item;  // reported back
        QString title;  // shown; empty: the item itself where it is a text or a number
        QString image;  // at the row's left; empty: none
    };
    static Item item(QVariant value) { return {std::move(value), {}, {}}; }

    /// `delegate` is not retained.
    ItemPickerController(QList<Item> list, QVariant initialSelection, QString forSource,
                         ItemPickerDelegate* delegate);

    const QString& title() const { return m_title; }
    void setTitle(const QString& title) { m_title = title; }
    const QString& source() const { return m_source; }

    enum Role { titleRole = Qt::UserRole, imageRole, checkedRole };
    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    Q_INVOKABLE void choose(int row);

  private:
    QList<Item> m_list;
    QVariant m_initial;
    QString m_source;
    QString m_title;
    ItemPickerDelegate* m_delegate;
};
