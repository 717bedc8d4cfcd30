#include "main/WindowPlace.h"

#include <QEvent>
#include <QTimerEvent>
#include <algorithm>

#include "defaults/UserDefaults.h"

namespace {

constexpr const char* kKey = "window";
constexpr const char* kWidth = "width";
constexpr const char* kHeight = "height";
constexpr const char* kFullScreen = "full-screen";
constexpr int kRestingMilliseconds = 1000;
constexpr int kLargest = 16384;  // points; more is a broken file

int length(const PropertyListValue::Dictionary& kept, const char* key, int otherwise) {
    const auto found = kept.find(key);
    if (found == kept.end())
        return otherwise;
    const auto* const points = found->second.integer();
    return points ? static_cast<int>(std::clamp<std::int64_t>(*points, 0, kLargest)) : otherwise;
}

}  // namespace

WindowPlace::WindowPlace(QWindow& window, UserDefaults& defaults)
    : m_window(window), m_defaults(defaults), m_size(window.size()) {
    restore();
    m_window.installEventFilter(this);
}

WindowPlace::~WindowPlace() {
    if (m_resting.isActive())
        keep();
}

void WindowPlace::restore() {
    const auto kept = m_defaults.dictionary(kKey);
    if (!kept)
        return;
    m_size = QSize(length(*kept, kWidth, m_size.width()), length(*kept, kHeight, m_size.height()))
                 .expandedTo(m_window.minimumSize());
    m_window.resize(m_size);
    const auto full = kept->find(kFullScreen);
    if (full != kept->end() && full->second.boolean() && *full->second.boolean())
        m_window.setWindowStates(Qt::WindowFullScreen);
}

bool WindowPlace::eventFilter(QObject* window, QEvent* event) {
    if (event->type() == QEvent::Resize || event->type() == QEvent::WindowStateChange) {
        if (m_window.windowStates() == Qt::WindowNoState)
            m_size = m_window.size();
        m_resting.start(kRestingMilliseconds, this);
    }
    return QObject::eventFilter(window, event);
}

void WindowPlace::timerEvent(QTimerEvent* event) {
    if (event->timerId() == m_resting.timerId())
        keep();
}

void WindowPlace::keep() {
    m_resting.stop();
    const bool full = m_window.windowStates().testFlag(Qt::WindowFullScreen);
    m_defaults.set(kKey,
                   PropertyListValue::Dictionary{
                       {kWidth, m_size.width()}, {kHeight, m_size.height()}, {kFullScreen, full}});
}
