#include "tutorial/PopoverAnchor.h"

namespace {

QQuickItem* visibleItem(QQuickItem& below, const QString& name) {
    const auto children = below.childItems();
    for (QQuickItem* child : children) {
        if (!child->isVisible())
            continue;
        if (child->objectName() == name)
            return child;
        if (QQuickItem* found = visibleItem(*child, name))
            return found;
    }
    return nullptr;
}

}  // namespace

void PopoverAnchor::setStage(QQuickItem* stage) {
    m_stage = stage;
    find();
}

void PopoverAnchor::setName(const QString& name) {
    m_name = name;
    find();
}

void PopoverAnchor::setSize(QSizeF size) {
    if (m_size == size)
        return;
    m_size = size;
    place();
}

void PopoverAnchor::find() {
    m_item = m_stage && !m_name.isEmpty() ? visibleItem(*m_stage, m_name) : nullptr;
    follow();
    place();
}

/// The item moves when any item around it does.
void PopoverAnchor::follow() {
    for (const auto& connection : m_followed)
        disconnect(connection);
    m_followed.clear();
    for (QQuickItem* item = m_item; item; item = item->parentItem()) {
        for (const auto signal : {&QQuickItem::xChanged, &QQuickItem::yChanged,
                                  &QQuickItem::widthChanged, &QQuickItem::heightChanged})
            m_followed.push_back(connect(item, signal, this, &PopoverAnchor::place));
        if (item == m_stage)
            break;
    }
}

void PopoverAnchor::place() {
    if (m_item && m_stage) {
        const QRectF anchor = m_item->mapRectToItem(m_stage, m_item->boundingRect());
        m_placement = PopoverPlacement::beside(anchor, m_size, m_stage->boundingRect());
    }
    Q_EMIT changed();
}
