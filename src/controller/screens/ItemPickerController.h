#pragma once

#include <QAbstractListModel>
#include <QVariant>

/// Who is told what was chosen.
class ItemPickerDelegate {
  public:
    virtual ~ItemPickerDelegate() = default;
    /// `index` is the item's place in the whole list.
    virtual void itemPicked(const QVariant& item, int index, const QString& forSource) = 0;
};

/// A plain list to choose one item from: the presets, the grain modes. It does not close itself.
/// A long one can be searched; its rows are then those items whose text holds what is searched for,
/// whatever the letter case and the accents, in their order. [main]
class ItemPickerController : public QAbstractListModel {
    Q_OBJECT
    Q_PROPERTY(QString title READ title CONSTANT)
    Q_PROPERTY(QString source READ source CONSTANT)
    Q_PROPERTY(int itemCount READ itemCount CONSTANT)
    Q_PROPERTY(bool searchable READ searchable CONSTANT)
    Q_PROPERTY(QString search READ search WRITE setSearch NOTIFY searchChanged)
    Q_PROPERTY(double scroll READ scroll WRITE setScroll NOTIFY scrollChanged)
    Q_PROPERTY(int checkedRow READ checkedRow NOTIFY searchChanged)

  public:
    /// A list of more items than this has a search field: it does not fit on every screen.
    static constexpr int kMostWithoutSearch = 10;

    struct Item {
        QVariant item;  // reported back
        QString title;  // shown; null: the item itself where it is a text or a number
        QString image;  // at the row's left; null: none
    };
    static Item item(QVariant value) { return {std::move(value), {}, {}}; }
    static Item item(QVariant value, QString title) {
        return {std::move(value), std::move(title), {}};
    }
    static Item itemWithImage(QVariant value, QString image) {
        return {std::move(value), {}, std::move(image)};
    }
    static Item item(QVariant value, QString title, QString image) {
        return {std::move(value), std::move(title), std::move(image)};
    }

    /// Where the player was in the list, for the next time that it is opened.
    struct Place {
        QString search;
        double scroll = -1;  // points from the first row; below 0: at the checked row
    };

    /// `delegate` is not retained.
    ItemPickerController(QList<Item> list, QVariant initialSelection, QString forSource,
                         ItemPickerDelegate* delegate);

    const QString& title() const { return m_title; }
    void setTitle(const QString& title) { m_title = title; }
    const QString& source() const { return m_source; }
    int itemCount() const { return static_cast<int>(m_list.size()); }
    bool searchable() const { return itemCount() > kMostWithoutSearch; }

    const Place& place() const { return m_place; }
    /// A search that finds nothing is not gone back to.
    void setPlace(const Place& place);
    const QString& search() const { return m_place.search; }
    void setSearch(const QString& text);
    double scroll() const { return m_place.scroll; }
    void setScroll(double points);

    /// Whether what the checked row stands for was changed since it was chosen.
    void setChanged(bool changed);
    /// -1 when it is not among the rows.
    int checkedRow() const;

    enum Role { titleRole = Qt::UserRole, imageRole, checkedRole, changedRole };
    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    Q_INVOKABLE void choose(int row);

  Q_SIGNALS:
    void searchChanged();
    void scrollChanged();

  private:
    void findRows();
    bool isChecked(const Item& item) const { return item.item == m_initial; }

    QList<Item> m_list;
    QStringList m_folded;  // the items' texts as they are searched
    QList<int> m_rows;     // places in the list of the items that are shown
    QVariant m_initial;
    QString m_source;
    QString m_title;
    ItemPickerDelegate* m_delegate;
    Place m_place;
    bool m_changed = false;
};
