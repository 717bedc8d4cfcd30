#include "screens/ItemPickerController.h"

ItemPickerController::ItemPickerController(QList<Item> list, QVariant initialSelection,
                                           QString forSource, ItemPickerDelegate* delegate)
    : m_list(std::move(list)),
      m_initial(std::move(initialSelection)),
      m_source(std::move(forSource)),
      m_delegate(delegate) {}

int ItemPickerController::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_list.size());
}

QVariant ItemPickerController::data(const QModelIndex& index, int role) const {
    const Item& item = m_list.at(index.row());
    switch (role) {
        case titleRole:
            return item.title.isEmpty() ? item.item.toString() : item.title;
        case imageRole:
            return item.image;
        case checkedRole:
            return item.item == m_initial;
        default:
            return {};
    }
}

QHash<int, QByteArray> ItemPickerController::roleNames() const {
    return {{titleRole, "title"}, {imageRole, "image"}, {checkedRole, "checked"}};
}

void ItemPickerController::choose(int row) {
    if (m_delegate && row >= 0 && row < m_list.size())
        m_delegate->itemPicked(m_list[row].item, row, m_source);
}
