#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "editing/EditWatch.h"

/// Does what takes longer than a frame of the screen, one thing at a time, on a thread of its own.
/// What is begun takes the place of what is under way, which is told so and waited for. [main]
class EditWorker {
  public:
    /// Runs on the thread. What it has captured is let go of on the main thread.
    using Work = std::function<void(EditWatch& watch)>;
    /// Hears that the work has ended, unless it was given up. [main]
    using Done = std::function<void()>;

    /// As many threads may hang, on files that never answer, before new work waits for them.
    explicit EditWorker(std::size_t threads = 1) : m_threads(threads) {}
    /// Gives up what is under way; what hangs is left behind.
    ~EditWorker();
    EditWorker(const EditWorker&) = delete;
    EditWorker& operator=(const EditWorker&) = delete;

    void begin(Work work, Done done);
    /// Gives up what is under way.
    void cancel();
    /// Waits for what is under way and calls its `Done`.
    void finish();
    /// Gives up what is under way and waits for its end.
    void stop();

    bool busy() const { return m_wanted != nullptr; }
    /// 0 to 1.
    float progress() const;

  private:
    struct Job;

    void startWanted();
    void ended(Job& job);
    void awaitRunning();

    const std::size_t m_threads;
    std::shared_ptr<Job> m_wanted;  // null: nothing is under way
    std::vector<std::shared_ptr<Job>> m_running;
};
