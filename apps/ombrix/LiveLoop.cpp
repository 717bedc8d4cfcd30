#include "LiveLoop.h"

#include <time.h>

#include <algorithm>

#include "log/Log.h"
#include "runloop/Clock.h"
#include "runloop/RunLoop.h"

namespace {
constexpr double kLongestSleep = 0.05;  // seconds
}

void LiveLoop::turn() {
    RunLoop::main().turn();
    Log::drain();
}

void LiveLoop::sleepUntil(double moment) {
    const double latest = Clock::monotonic() + kLongestSleep;
    const double until = std::min({moment, latest, RunLoop::main().nextDue()});
    timespec time{};
    time.tv_sec = static_cast<time_t>(until);
    time.tv_nsec = static_cast<long>((until - static_cast<double>(time.tv_sec)) * 1e9);
    clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &time, nullptr);
}
