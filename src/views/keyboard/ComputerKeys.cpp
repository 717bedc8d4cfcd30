#include "keyboard/ComputerKeys.h"

#include <QGuiApplication>
#include <algorithm>
#include <utility>

#include "touch/InputLoss.h"

namespace {

using Role = KeyPosition::Role;

constexpr int kOctave = 12;
/// Keys that are C.
constexpr int kFirstLowestKey = 27;  // the upper row then begins at middle C
constexpr int kLeastLowestKey = -9;
constexpr int kGreatestLowestKey = 75;

constexpr int kTwiceMilliseconds = 500;

bool scanCodesKnown() {
    const QString platform = QGuiApplication::platformName();
    return platform == "xcb" || platform.startsWith("wayland");
}

bool editsText(const QQuickWindow& window) {
    const QQuickItem* const item = window.activeFocusItem();
    return item && item->inputMethodQuery(Qt::ImEnabled).toBool();
}

bool showsFocus(const QQuickWindow& window) {
    const QQuickItem* const item = window.activeFocusItem();
    return item && item->property("visualFocus").toBool();
}

}  // namespace

ComputerKeys::ComputerKeys(QObject* parent) : QObject(parent), m_lowestKey(kFirstLowestKey) {
    m_pressed.fill(kNone);
}

ComputerKeys::~ComputerKeys() {
    setTarget(nullptr);
}

void ComputerKeys::setTarget(ScrollingKeyboardView* target) {
    if (target == m_target)
        return;
    releaseAll();
    if (m_target)
        m_target->disconnect(this);
    m_target = target;
    watch(target ? target->window() : nullptr);
    if (target)
        connect(target, &QQuickItem::windowChanged, this, &ComputerKeys::watch);
    Q_EMIT targetChanged();
}

void ComputerKeys::watch(QQuickWindow* window) {
    releaseAll();
    if (m_window)
        m_window->removeEventFilter(this);
    m_window = window;
    if (window)
        window->installEventFilter(this);
}

bool ComputerKeys::eventFilter(QObject*, QEvent* event) {
    if (losesInput(*event, *m_window))
        releaseAll();
    else if (event->type() == QEvent::KeyPress)
        return keyPressed(*static_cast<QKeyEvent*>(event));
    else if (event->type() == QEvent::KeyRelease)
        return keyReleased(*static_cast<QKeyEvent*>(event));
    return false;
}

bool ComputerKeys::mayTake(const QKeyEvent& event, Role role) const {
    if (event.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier))
        return false;
    return !editsText(*m_window) && !(role == Role::hold && showsFocus(*m_window));
}

bool ComputerKeys::keyPressed(const QKeyEvent& event) {
    const auto position = keyPosition(event, scanCodesKnown());
    if (!position)
        return false;
    const bool taken = mayTake(event, position->role);
    if (position->role == Role::escape && !event.isAutoRepeat())
        escape(taken);
    if (taken && !event.isAutoRepeat())
        act(*position);
    return taken;
}

void ComputerKeys::act(KeyPosition position) {
    switch (position.role) {
        case Role::plays:
            return press(position.semitone);
        case Role::octaveDown:
            return moveBy(-kOctave);
        case Role::octaveUp:
            return moveBy(kOctave);
        case Role::hold:
            m_hold = true;
            return;
        case Role::escape:
            return;
    }
}

/// What was pressed is let go wherever the focus is by now; others may have use for it as well.
bool ComputerKeys::keyReleased(const QKeyEvent& event) {
    const auto position = keyPosition(event, scanCodesKnown());
    if (!position)
        return false;
    if (event.isAutoRepeat())
        return mayTake(event, position->role);
    if (position->role == Role::plays)
        release(position->semitone);
    else if (position->role == Role::hold)
        releaseHeld();
    return mayTake(event, position->role);
}

bool ComputerKeys::isPressed(int key) const {
    return std::ranges::find(m_pressed, key) != m_pressed.end();
}

void ComputerKeys::press(int semitone) {
    const int key = m_lowestKey + semitone;
    int& pressed = m_pressed[static_cast<std::size_t>(semitone)];
    if (pressed != kNone || key < 0 || key >= kKeyCount || !m_target)
        return;
    if (m_held.test(static_cast<std::size_t>(key)) && !isPressed(key))
        m_target->playKey(key, false);  // it is held, and struck again
    m_held.reset(static_cast<std::size_t>(key));
    pressed = key;
    m_target->playKey(key, true);
}

void ComputerKeys::release(int semitone) {
    const int key = std::exchange(m_pressed[static_cast<std::size_t>(semitone)], kNone);
    if (key == kNone || isPressed(key) || !m_target)
        return;
    if (m_hold)
        m_held.set(static_cast<std::size_t>(key));
    else
        m_target->playKey(key, false);
}

void ComputerKeys::releaseHeld() {
    m_hold = false;
    for (int key = 0; key < kKeyCount && m_target; ++key) {
        if (m_held.test(static_cast<std::size_t>(key)))
            m_target->playKey(key, false);
    }
    m_held.reset();
}

void ComputerKeys::releaseAll() {
    releaseHeld();
    for (int semitone = 0; semitone < kPositions; ++semitone)
        release(semitone);
}

void ComputerKeys::moveBy(int keys) {
    const int lowest = std::clamp(m_lowestKey + keys, kLeastLowestKey, kGreatestLowestKey);
    if (lowest == m_lowestKey)
        return;
    m_lowestKey = lowest;
    Q_EMIT lowestKeyChanged();
}

void ComputerKeys::escape(bool mayClose) {
    if (m_sinceEscape.isValid() && m_sinceEscape.elapsed() <= kTwiceMilliseconds) {
        m_sinceEscape.invalidate();
        releaseAll();
        if (m_target)
            m_target->releaseEverything();
        Q_EMIT silenceEverything();
        return;
    }
    m_sinceEscape.start();
    if (mayClose)
        Q_EMIT closeTop();
}
