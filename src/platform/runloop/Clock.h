#pragma once

/// Tells the time. Implementations must be safe on any thread, renders included.
class TimeSource {
  public:
    virtual ~TimeSource() = default;
    virtual double now() noexcept = 0;
};

/// The program's one clock: seconds since 2001-01-01 UTC. Offline rendering and tests put a source
/// of their own in place of the system's, before anything runs.
namespace Clock {
/// [any thread]
double now() noexcept;
/// [any thread] Seconds that no one turns back: for spans and timers. A source of our own answers
/// for this clock too.
double monotonic() noexcept;
/// [control] Not owned; null is the system's clock.
void setSource(TimeSource* source) noexcept;
}  // namespace Clock
