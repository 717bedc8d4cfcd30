#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

/// A thread that does its work every so often until it is stopped. Nobody has to wake it, so a
/// render may leave it work without calling the system.
class PeriodicThread {
  public:
    /// `name` of at most 15 characters is what process lists show.
    PeriodicThread(const char* name, std::chrono::milliseconds every, std::function<void()> work);
    ~PeriodicThread() { stop(); }
    PeriodicThread(const PeriodicThread&) = delete;
    PeriodicThread& operator=(const PeriodicThread&) = delete;

    /// Returns when the work that runs is done; none begins after that.
    void stop();

  private:
    void run();

    const char* m_name;
    std::chrono::milliseconds m_every;
    std::function<void()> m_work;
    std::mutex m_mutex;
    std::condition_variable m_wake;
    bool m_stopped = false;
    std::thread m_thread;
};
