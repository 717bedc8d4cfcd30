#pragma once

#include <cstdint>
#include <functional>
#include <mutex>
#include <vector>

/// Calls on the main thread at a later time, once or again and again. Whoever runs the main thread
/// calls `turn` often enough; nothing is ever called from anywhere else. Time is
/// `Clock::monotonic`, so offline it is the frame count.
class RunLoop {
  public:
    using Task = std::function<void()>;
    using Token = std::uint64_t;

    /// The program's one loop.
    static RunLoop& main();

    /// [any thread but render] Calls `task` once, `seconds` from now.
    Token callAfter(double seconds, Task task);
    /// [any thread but render] Calls `task` every `seconds`, first `seconds` from now. Turns that
    /// come late neither add calls nor shift the later ones.
    Token callEvery(double seconds, Task task);
    /// [main] Called after every addition, by whoever adds, under the loop's own lock: for a main
    /// thread that sleeps. Null for none. When this returns the one before is not being called.
    void setWaker(Task waker);

    /// [main] The task will not be called again; it may cancel itself. Others than those known are
    /// ignored.
    void cancel(Token token);

    /// [main] Calls what is due by now, the earliest first. What these calls add waits for the next
    /// turn.
    void turn();
    /// [any thread but render] When something is due next, on `Clock::monotonic`; infinity when
    /// nothing is.
    double nextDue() const;

  private:
    struct Entry {
        Token token;
        double due;
        double every;  // 0: once
        Task task;
    };
    Token add(double due, double every, Task task);
    bool takeDue(double now, Token newest, Task& task);

    mutable std::mutex m_mutex;
    std::vector<Entry> m_entries;
    Task m_waker;
    Token m_nextToken = 1;
};
