#include "LoopAlarm.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>

#include "runloop/RunLoop.h"

LoopAlarm::LoopAlarm() : m_bell(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
    RunLoop::main().setWaker([this] { ring(); });
}

LoopAlarm::~LoopAlarm() {
    RunLoop::main().setWaker(nullptr);
    if (m_bell >= 0)
        close(m_bell);
}

void LoopAlarm::ring() const {
    const std::uint64_t once = 1;
    [[maybe_unused]] const auto written = write(m_bell, &once, sizeof once);
}

void LoopAlarm::sleep(double seconds) {
    seconds = std::max(seconds, 0.0);
    timespec time{};
    time.tv_sec = static_cast<time_t>(seconds);
    time.tv_nsec = static_cast<long>((seconds - static_cast<double>(time.tv_sec)) * 1e9);
    pollfd rung{m_bell, POLLIN, 0};
    if (ppoll(&rung, 1, &time, nullptr) <= 0)
        return;
    std::uint64_t count = 0;
    [[maybe_unused]] const auto taken = read(m_bell, &count, sizeof count);
}
