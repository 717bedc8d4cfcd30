#include "BackgroundWorker.h"

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <system_error>
#include <thread>

#include "handoff/ThreadSafeMessageQueue.h"
#include "runloop/RunLoop.h"

/// What owner and thread share, until the main thread has heard of the thread's end.
class BackgroundWorker::Loop : public std::enable_shared_from_this<Loop> {
  public:
    explicit Loop(BackgroundWorker& worker) : m_worker(worker) {}

    void start() {
        try {
            std::thread([self = shared_from_this()]() mutable {
                self->backgroundLoop();
                // What is still queued is let go of on the main thread, with the loop itself.
                RunLoop::main().callAfter(0, [last = std::move(self)] {});
            }).detach();
        } catch (const std::system_error&) {
            m_hasThread = false;
        }
    }

    void addTask(std::shared_ptr<BackgroundWorkerTask> task) {
        if (auto* cancellable = task->cancellable())
            cancellable->setBackgroundWorkCancelled(false);
        m_taskQueue.addMessage(std::move(task));
        if (!m_hasThread)  // the main thread does it: late is better than never
            RunLoop::main().callAfter(0, [self = shared_from_this()] { self->workOnHead(); });
    }

    void cancelAllTasks() {
        const std::lock_guard walking(m_taskQueue.getLock());
        for (const auto& task : m_taskQueue)
            if (auto* cancellable = task ? task->cancellable() : nullptr)
                cancellable->setBackgroundWorkCancelled(true);
    }

    void waitForAllTasks() {
        while (!m_hasThread && !m_shouldShutDown && m_taskQueue.messagesAreAvailable())
            workOnHead();
        std::unique_lock lock(m_mutex);
        while (m_hasThread && !m_hasEnded && m_taskQueue.messagesAreAvailable())
            m_taskComplete.wait(lock);
    }

    void shutdown() {
        if (m_shouldShutDown.exchange(true))
            return;
        cancelAllTasks();
        m_taskQueue.specialSignal();
        // A thread that is just about to wait would miss the signal, but not a message.
        m_taskQueue.addMessage(nullptr);
    }

    BackgroundWorkerDelegate* delegate = nullptr;  // [main]

  private:
    using Queue = ThreadSafeMessageQueue<BackgroundWorkerTask>;

    void backgroundLoop() {
        while (!m_shouldShutDown) {
            if (m_taskQueue.blockUntilMessageAvailable())
                workOnHead();
        }
        const std::lock_guard lock(m_mutex);
        m_hasEnded = true;
        m_taskComplete.notify_all();
    }

    /// The queue keeps the head, and no reference is left here that could be the last.
    void workOnHead() {
        BackgroundWorkerTask* const head = m_taskQueue.messageAtHeadOfQueue().get();
        if (!head || m_shouldShutDown)
            return;
        head->doBackgroundWork();
        // One step for whoever waits: the queue is empty and the report on its way.
        const std::lock_guard lock(m_mutex);
        m_reported.addMessage(m_taskQueue.getMessageIfAvailable());
        RunLoop::main().callAfter(0, [self = shared_from_this()] { self->dispatchFinishedTask(); });
        m_taskComplete.notify_all();
    }

    void dispatchFinishedTask() {
        const auto task = m_reported.getMessageIfAvailable();
        if (!delegate)
            return;
        auto* cancellable = task->cancellable();
        delegate->task(m_worker, task, !(cancellable && cancellable->backgroundWorkCancelled()));
    }

    BackgroundWorker& m_worker;  // lives while there is a delegate
    Queue m_taskQueue;
    Queue m_reported;  // run, and on their way to the main thread
    std::mutex m_mutex;
    std::condition_variable m_taskComplete;
    std::atomic<bool> m_shouldShutDown{false};
    bool m_hasEnded = false;  // under the mutex
    bool m_hasThread = true;
};

BackgroundWorker::BackgroundWorker() : m_loop(std::make_shared<Loop>(*this)) {
    m_loop->start();
}

BackgroundWorker::~BackgroundWorker() {
    setDelegate(nullptr);
    shutdown();
}

BackgroundWorkerDelegate* BackgroundWorker::delegate() const {
    return m_loop->delegate;
}

void BackgroundWorker::setDelegate(BackgroundWorkerDelegate* delegate) {
    m_loop->delegate = delegate;
}

void BackgroundWorker::addTask(std::shared_ptr<BackgroundWorkerTask> task) {
    m_loop->addTask(std::move(task));
}

void BackgroundWorker::cancelAllTasks() {
    m_loop->cancelAllTasks();
}

void BackgroundWorker::waitForAllTasks() {
    m_loop->waitForAllTasks();
}

void BackgroundWorker::shutdown() {
    m_loop->shutdown();
}
