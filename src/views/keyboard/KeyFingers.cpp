#include "keyboard/KeyFingers.h"

#include <algorithm>

namespace {

void press(PianoKeyButton* key) {
    if (!key)
        return;
    key->setHighlighted(true);
    key->sendActions(ControlEvents::touchDown);
}

void leave(PianoKeyButton* key) {
    if (!key)
        return;
    key->setHighlighted(false);
    key->sendActions(ControlEvents::touchUpOutside);
}

void release(PianoKeyButton* key, ControlEvents event) {
    if (!key || !key->highlighted())
        return;
    key->setHighlighted(false);
    key->sendActions(event);
}

}  // namespace

KeyFingers::Finger* KeyFingers::find(FingerId id) {
    const auto found = std::ranges::find(m_fingers, id, &Finger::id);
    return found == m_fingers.end() ? nullptr : &*found;
}

bool KeyFingers::isDown(FingerId id) const {
    return std::ranges::find(m_fingers, id, &Finger::id) != m_fingers.end();
}

void KeyFingers::began(FingerId id, QPointF at, PianoKeyButton* key) {
    cancelled(id);  // of a device that lost its release
    m_fingers.push_back({id, at, key});
    press(key);
}

void KeyFingers::moved(FingerId id, QPointF to) {
    Finger* const finger = find(id);
    if (!finger)
        return;
    const QPointer<PianoKeyButton> from = finger->key;
    const QPointer<PianoKeyButton> onto = m_keyAt(to);
    finger->at = to;
    finger->key = onto;
    if (from == onto)
        return;
    leave(from);
    press(onto);
}

void KeyFingers::ended(FingerId id, QPointF at) {
    if (isDown(id))
        lift(id, m_keyAt(at));
}

void KeyFingers::cancelled(FingerId id) {
    if (const Finger* const finger = find(id))
        lift(id, finger->key);
}

void KeyFingers::lift(FingerId id, PianoKeyButton* under) {
    const QPointer<PianoKeyButton> from = find(id)->key;
    std::erase_if(m_fingers, [&](const Finger& finger) { return finger.id == id; });
    release(under, ControlEvents::touchUpInside);
    release(from, ControlEvents::touchUpOutside);
}

void KeyFingers::cancelAll() {
    while (!m_fingers.empty())
        cancelled(m_fingers.front().id);
}

void KeyFingers::cancelWhere(const std::function<bool(FingerId)>& gone) {
    std::vector<FingerId> lost;
    for (const Finger& finger : m_fingers) {
        if (gone(finger.id))
            lost.push_back(finger.id);
    }
    for (const FingerId id : lost)
        cancelled(id);
}

void KeyFingers::releaseKeys() {
    for (Finger& finger : m_fingers) {
        release(finger.key, ControlEvents::touchCancel);
        finger.key = nullptr;
    }
}

void KeyFingers::findKeys() {
    for (Finger& finger : m_fingers)
        finger.key = m_keyAt(finger.at);
}
