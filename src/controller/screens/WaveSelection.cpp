#include "screens/WaveSelection.h"

#include <algorithm>
#include <tuple>

#include "notifications/NotificationCentre.h"

void WaveSelection::select(int start, int stop) {
    set(start, stop, m_length);
}

void WaveSelection::reset(int length) {
    set(0, length, length);
}

void WaveSelection::resize(int length) {
    if (everything())
        return reset(length);
    set(m_start, m_stop, length);
}

void WaveSelection::set(int start, int stop, int length) {
    length = std::max(length, 0);
    start = std::clamp(start, 0, length);
    stop = std::clamp(stop, 0, length);
    const std::tuple now{std::min(start, stop), std::max(start, stop), length};
    if (now == std::tuple{m_start, m_stop, m_length})
        return;
    std::tie(m_start, m_stop, m_length) = now;
    Q_EMIT changed();
    NotificationCentre::defaultCentre().post(kNotification);
}
