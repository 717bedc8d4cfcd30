#pragma once

#include <memory>

#include "BackgroundWorkerTask.h"

class BackgroundWorker;

class BackgroundWorkerDelegate {
  public:
    virtual ~BackgroundWorkerDelegate() = default;
    /// A task has run; `finished` is false for one that was cancelled. [main]
    virtual void task(BackgroundWorker& worker, const std::shared_ptr<BackgroundWorkerTask>& task,
                      bool finished) = 0;
};

/// Runs tasks one after the other on a thread of its own and reports each on the main thread,
/// through RunLoop::main. The task under way stays at the head of the queue, so that it can be
/// cancelled and waited for. Tasks, and what they hold, are let go of on the main thread only.
/// [main] for every call.
class BackgroundWorker {
  public:
    BackgroundWorker();
    /// As `shutdown`, without a delegate; the thread ends by itself.
    ~BackgroundWorker();
    BackgroundWorker(const BackgroundWorker&) = delete;
    BackgroundWorker& operator=(const BackgroundWorker&) = delete;

    BackgroundWorkerDelegate* delegate() const;
    /// Not retained; null for none, and then nothing is reported any more.
    void setDelegate(BackgroundWorkerDelegate* delegate);

    /// Clears the flag of a cancellable task.
    void addTask(std::shared_ptr<BackgroundWorkerTask> task);
    /// Cancellable tasks are still run, up to their next look at the flag, and reported as not
    /// finished.
    void cancelAllTasks();
    /// Returns when no task is queued or under way; the reports are on their way then.
    void waitForAllTasks();
    /// Cancels all, and runs no more than the task under way. Does not wait.
    void shutdown();

  private:
    class Loop;  // lives as long as the thread
    std::shared_ptr<Loop> m_loop;
};
