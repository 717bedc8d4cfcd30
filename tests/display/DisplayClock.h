#pragma once

#include <atomic>
#include <thread>

#include "runloop/Clock.h"
#include "runloop/RunLoop.h"

/// The program's clock in the test's hands. Lives as long as the process: workers look at it too.
class DisplayClock final : public TimeSource {
  public:
    static DisplayClock& install() {
        static auto* clock = new DisplayClock;
        Clock::setSource(clock);
        return *clock;
    }
    double now() noexcept override { return m_now; }
    /// Lets time pass and calls what is due.
    void pass(double seconds) {
        m_now = m_now + seconds;
        RunLoop::main().turn();
    }
    /// Turns the loop, without letting time pass, until it is so.
    template <typename Condition>
    void until(Condition condition) {
        while (!condition()) {
            std::this_thread::yield();
            RunLoop::main().turn();
        }
    }

  private:
    std::atomic<double> m_now{785959509.0};
};
