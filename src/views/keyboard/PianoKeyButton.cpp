#include "keyboard/PianoKeyButton.h"

#include "keyboard/PianoKeyNode.h"

namespace {

constexpr qreal kTravel = 8;  // points that labels move when the key goes down

}  // namespace

PianoKeyButton::PianoKeyButton(QQuickItem* parent) : QQuickItem(parent) {
    setFlag(ItemHasContents);
}

void PianoKeyButton::setTag(int tag) {
    if (tag == m_tag)
        return;
    m_tag = tag;
    Q_EMIT tagChanged();
}

void PianoKeyButton::setHighlighted(bool highlighted) {
    if (highlighted == m_highlighted)
        return;
    m_highlighted = highlighted;
    for (KeyLabel& label : m_labels) {
        label.highlighted = highlighted;
        label.frame.translate(0, highlighted ? kTravel : -kTravel);
    }
    update();
    Q_EMIT highlightedChanged();
}

void PianoKeyButton::setPictures(const QString& up, const QString& down) {
    m_upPicture = up;
    m_downPicture = down;
}

void PianoKeyButton::addTarget(ControlEvents events, Action action) {
    m_targets.emplace_back(events, std::move(action));
}

void PianoKeyButton::sendActions(ControlEvents event) {
    for (const auto& [events, action] : m_targets) {
        if (includes(events, event))
            action(*this);
    }
}

void PianoKeyButton::setInView(bool inView) {
    if (inView == m_inView)
        return;
    m_inView = inView;
    update();
}

QSGNode* PianoKeyButton::updatePaintNode(QSGNode* old, UpdatePaintNodeData*) {
    if (!m_inView) {
        delete old;
        return nullptr;
    }
    auto* node = static_cast<PianoKeyNode*>(old);
    if (!node)
        node = new PianoKeyNode(*window(), m_labels.size());
    node->show(*this);
    return node;
}
