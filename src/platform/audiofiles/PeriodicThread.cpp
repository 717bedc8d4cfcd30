#include "audiofiles/PeriodicThread.h"

#include <pthread.h>
#include <signal.h>

PeriodicThread::PeriodicThread(const char* name, std::chrono::milliseconds every,
                               std::function<void()> work)
    : m_name(name), m_every(every), m_work(std::move(work)), m_thread([this] { run(); }) {}

void PeriodicThread::stop() {
    if (!m_thread.joinable())
        return;
    {
        std::lock_guard guard(m_mutex);
        m_stopped = true;
    }
    m_wake.notify_one();
    m_thread.join();
}

void PeriodicThread::run() {
    // Signals are for the main thread, whose waits they are to end.
    sigset_t all;
    sigfillset(&all);
    pthread_sigmask(SIG_BLOCK, &all, nullptr);
    pthread_setname_np(pthread_self(), m_name);
    std::unique_lock lock(m_mutex);
    while (!m_wake.wait_for(lock, m_every, [this] { return m_stopped; })) {
        lock.unlock();
        m_work();
        lock.lock();
    }
}
