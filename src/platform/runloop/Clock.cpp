#include "runloop/Clock.h"

#include <atomic>
#include <chrono>

namespace {
constexpr double kReferenceDate = 978307200.0;  // 2001-01-01 UTC, seconds since 1970
std::atomic<TimeSource*> source{nullptr};
}  // namespace

double Clock::now() noexcept {
    if (TimeSource* replaced = source.load(std::memory_order_acquire))
        return replaced->now();
    const auto sinceEpoch = std::chrono::system_clock::now().time_since_epoch();
    return std::chrono::duration<double>(sinceEpoch).count() - kReferenceDate;
}

double Clock::monotonic() noexcept {
    if (TimeSource* replaced = source.load(std::memory_order_acquire))
        return replaced->now();
    const auto sinceStart = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration<double>(sinceStart).count();
}

void Clock::setSource(TimeSource* replacement) noexcept {
    source.store(replacement, std::memory_order_release);
}
