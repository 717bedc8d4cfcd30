#pragma once

#include <QAbstractAnimation>
#include <functional>
#include <utility>

/// Calls with each frame of the screen while it runs. [main]
class FrameClock : public QAbstractAnimation {
  public:
    /// @param tick  hears the seconds since the frame before
    explicit FrameClock(std::function<void(double seconds)> tick) : m_tick(std::move(tick)) {}

    int duration() const override { return -1; }
    void run(bool running) {
        if (running == (state() == Running))
            return;
        m_last = 0;
        running ? start() : stop();
    }

  protected:
    void updateCurrentTime(int milliseconds) override {
        const int passed = milliseconds - std::exchange(m_last, milliseconds);
        if (passed > 0)
            m_tick(passed / 1000.);
    }

  private:
    std::function<void(double)> m_tick;
    int m_last = 0;
};
