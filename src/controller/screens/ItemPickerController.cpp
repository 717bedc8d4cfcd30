#include "screens/ItemPickerController.h"

#include <algorithm>

#include "screens/SearchText.h"

namespace {

QString textOf(const ItemPickerController::Item& item) {
    return item.title.isNull() ? item.item.toString() : item.title;
}

}  // namespace

ItemPickerController::ItemPickerController(QList<Item> list, QVariant initialSelection,
                                           QString forSource, ItemPickerDelegate* delegate)
    : m_list(std::move(list)),
      m_initial(std::move(initialSelection)),
      m_source(std::move(forSource)),
      m_delegate(delegate) {
    findRows();
}

void ItemPickerController::setPlace(const Place& place) {
    setSearch(place.search);
    setScroll(place.scroll);
    if (m_rows.isEmpty()) {
        setSearch({});
        setScroll(Place().scroll);
    }
}

void ItemPickerController::setSearch(const QString& text) {
    if (text == m_place.search)
        return;
    beginResetModel();
    m_place.search = text;
    findRows();
    endResetModel();
    Q_EMIT searchChanged();
}

void ItemPickerController::setScroll(double points) {
    if (points == m_place.scroll)
        return;
    m_place.scroll = points;
    Q_EMIT scrollChanged();
}

void ItemPickerController::setChanged(bool changed) {
    if (changed == m_changed)
        return;
    m_changed = changed;
    if (const int row = checkedRow(); row >= 0)
        Q_EMIT dataChanged(index(row), index(row), {changedRole});
}

void ItemPickerController::findRows() {
    const QString wanted = SearchText::folded(m_place.search).trimmed();
    if (!wanted.isEmpty() && m_folded.isEmpty()) {
        for (const Item& item : m_list)
            m_folded += SearchText::folded(textOf(item));
    }
    m_rows.clear();
    for (int i = 0; i < itemCount(); ++i) {
        if (wanted.isEmpty() || m_folded[i].contains(wanted))
            m_rows += i;
    }
}

int ItemPickerController::checkedRow() const {
    const auto found = std::ranges::find_if(m_rows, [this](int i) { return isChecked(m_list[i]); });
    return found == m_rows.end() ? -1 : static_cast<int>(found - m_rows.begin());
}

int ItemPickerController::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

QVariant ItemPickerController::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() >= m_rows.size())
        return {};
    const Item& item = m_list[m_rows[index.row()]];
    switch (role) {
        case Qt::DisplayRole:
        case titleRole:
            return textOf(item);
        case imageRole:
            return item.image;
        case checkedRole:
            return isChecked(item);
        case changedRole:
            return m_changed && isChecked(item);
        default:
            return {};
    }
}

QHash<int, QByteArray> ItemPickerController::roleNames() const {
    return {{titleRole, "title"},
            {imageRole, "image"},
            {checkedRole, "checked"},
            {changedRole, "changed"}};
}

void ItemPickerController::choose(int row) {
    if (m_delegate && row >= 0 && row < m_rows.size())
        m_delegate->itemPicked(m_list[m_rows[row]].item, m_rows[row], m_source);
}
