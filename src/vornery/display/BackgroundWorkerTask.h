#pragma once

#include <atomic>
#include <mutex>

class BackgroundWorkerCancellableTask;

/// What a BackgroundWorker does for its owner.
class BackgroundWorkerTask {
  public:
    virtual ~BackgroundWorkerTask() = default;
    /// [worker]
    virtual void doBackgroundWork() = 0;
    /// The same task if it can be given up before it is done; else null.
    virtual BackgroundWorkerCancellableTask* cancellable() { return nullptr; }
};

/// A task that can be given up. The flag is set under the task's own monitor and read without it:
/// the worker only needs to see it eventually.
class BackgroundWorkerCancellableTask : public BackgroundWorkerTask {
  public:
    BackgroundWorkerCancellableTask* cancellable() final { return this; }
    /// [any thread]
    bool backgroundWorkCancelled() const {
        return m_backgroundWorkCancelled.load(std::memory_order_relaxed);
    }
    /// [any thread]
    void setBackgroundWorkCancelled(bool cancelled) {
        const std::lock_guard monitor(m_monitor);
        m_backgroundWorkCancelled.store(cancelled, std::memory_order_relaxed);
    }

  private:
    std::mutex m_monitor;
    std::atomic<bool> m_backgroundWorkCancelled{false};
};
