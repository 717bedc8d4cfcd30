#pragma once

#include "runloop/Clock.h"
#include "runloop/RunLoop.h"

/// The program's clock in a test's hands.
class ManualClock final : public TimeSource {
  public:
    ManualClock() { Clock::setSource(this); }
    ~ManualClock() override { Clock::setSource(nullptr); }
    double now() noexcept override { return m_now; }

    /// Lets seconds pass one by one, each with a turn of the main thread's loop.
    void pass(int seconds) {
        for (int i = 0; i < seconds; ++i)
            step(1.0);
    }
    /// Lets that much time pass at once.
    void step(double seconds) {
        m_now += seconds;
        RunLoop::main().turn();
    }

  private:
    double m_now = 785959509.3;
};
