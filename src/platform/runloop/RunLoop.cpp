#include "runloop/RunLoop.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "runloop/Clock.h"

RunLoop& RunLoop::main() {
    // Never destroyed: a thread of our own may still call after main has returned.
    static auto* loop = new RunLoop;
    return *loop;
}

RunLoop::Token RunLoop::add(double due, double every, Task task) {
    std::lock_guard guard(m_mutex);
    m_entries.push_back({m_nextToken, due, every, std::move(task)});
    if (m_waker)
        m_waker();
    return m_nextToken++;
}

RunLoop::Token RunLoop::callAfter(double seconds, Task task) {
    return add(Clock::monotonic() + seconds, 0, std::move(task));
}

RunLoop::Token RunLoop::callEvery(double seconds, Task task) {
    return add(Clock::monotonic() + seconds, seconds, std::move(task));
}

void RunLoop::setWaker(Task waker) {
    std::lock_guard guard(m_mutex);
    m_waker = std::move(waker);
}

void RunLoop::cancel(Token token) {
    Task dropped;  // let go of outside the lock: it may own something that cancels too
    std::lock_guard guard(m_mutex);
    const auto found = std::ranges::find(m_entries, token, &Entry::token);
    if (found == m_entries.end())
        return;
    dropped = std::move(found->task);
    m_entries.erase(found);
}

void RunLoop::turn() {
    const double now = Clock::monotonic();
    Token newest;
    {
        std::lock_guard guard(m_mutex);
        newest = m_nextToken;
    }
    for (;;) {
        Task task;  // let go of after each call, outside the lock
        if (!takeDue(now, newest, task))
            return;
        task();
    }
}

/// The earliest entry that is due and older than `newest`; a repeating one stays, for later.
bool RunLoop::takeDue(double now, Token newest, Task& task) {
    std::lock_guard guard(m_mutex);
    const auto first = std::ranges::min_element(m_entries, {}, [&](const Entry& entry) {
        const bool candidate = entry.due <= now && entry.token < newest;
        return candidate ? entry.due : std::numeric_limits<double>::infinity();
    });
    if (first == m_entries.end() || first->due > now || first->token >= newest)
        return false;
    if (first->every > 0) {
        task = first->task;
        first->due += first->every * (1 + std::floor((now - first->due) / first->every));
        return true;
    }
    task = std::move(first->task);
    m_entries.erase(first);
    return true;
}

double RunLoop::nextDue() const {
    std::lock_guard guard(m_mutex);
    double due = std::numeric_limits<double>::infinity();
    for (const Entry& entry : m_entries)
        due = std::min(due, entry.due);
    return due;
}
