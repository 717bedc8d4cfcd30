#include "LiveLoop.h"

#include <algorithm>

#include "LoopAlarm.h"
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
    static LoopAlarm alarm;
    const double now = Clock::monotonic();
    const double until = std::min({moment, now + kLongestSleep, RunLoop::main().nextDue()});
    alarm.sleep(until - now);
}
