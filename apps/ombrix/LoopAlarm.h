#pragma once

/// Wakes a sleeping main thread when any thread adds a call to the main run loop, of which it is
/// the waker while it lives. [main]
class LoopAlarm {
  public:
    LoopAlarm();
    ~LoopAlarm();
    LoopAlarm(const LoopAlarm&) = delete;
    LoopAlarm& operator=(const LoopAlarm&) = delete;

    /// Sleeps, unless a call was added since the last sleep. Ends early when a signal arrives.
    void sleep(double seconds);

  private:
    void ring() const;

    int m_bell = -1;  // an event counter; without one sleeps are not cut short
};
