#pragma once

#include <sys/eventfd.h>
#include <unistd.h>

#include <cstdint>

/// Wakes a thread that polls. Never waits.
class WakeEvent {
  public:
    WakeEvent() : m_descriptor(eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC)) {}
    ~WakeEvent() { ::close(m_descriptor); }
    WakeEvent(const WakeEvent&) = delete;
    WakeEvent& operator=(const WakeEvent&) = delete;

    /// [any thread]
    void raise() const { [[maybe_unused]] const int told = eventfd_write(m_descriptor, 1); }
    /// [the thread that polls] Before it looks what it was woken for.
    void clear() const {
        eventfd_t count;
        [[maybe_unused]] const int had = eventfd_read(m_descriptor, &count);
    }
    int descriptor() const { return m_descriptor; }

  private:
    const int m_descriptor;
};
