#include "audiounits/devices/RealTimePriority.h"

#include <pthread.h>
#include <sched.h>
#include <sys/resource.h>

#include <algorithm>
#include <thread>

#include "audiounits/devices/RealTimeKit.h"

namespace {

// Above ordinary programs, below what audio servers give their own threads by default on systems
// where both can be chosen.
constexpr int kPriority = 10;

// A process that a rendering thread starts must not inherit the priority.
bool acquireWithin(int priority) {
    sched_param parameters{};
    parameters.sched_priority = priority;
    return priority > 0 && pthread_setschedparam(pthread_self(), SCHED_FIFO | SCHED_RESET_ON_FORK,
                                                 &parameters) == 0;
}

bool acquireWithinLimits() {
    rlimit limit{};
    if (getrlimit(RLIMIT_RTPRIO, &limit) != 0)
        limit.rlim_cur = 0;
    const int allowed = static_cast<int>(std::min<rlim_t>(limit.rlim_cur, kPriority));
    return acquireWithin(kPriority) || acquireWithin(allowed);
}

}  // namespace

bool RealTimePriority::acquire() {
    return acquireWithinLimits() || RealTimeKit::grant(kPriority);
}

bool RealTimePriority::available() {
    bool granted = false;
    std::thread([&] { granted = acquire(); }).join();
    return granted;
}
