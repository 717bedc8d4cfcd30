#pragma once

#include <atomic>
#include <cstdint>
#include <type_traits>

/// Whether posting `a` of an AtomicTransfer came before posting `b`; the counts wrap.
inline bool postedBefore(std::int32_t a, std::int32_t b) noexcept {
    const auto ahead = static_cast<std::uint32_t>(a) - static_cast<std::uint32_t>(b);
    return static_cast<std::int32_t>(ahead) < 0;
}

/// A single-slot mailbox from one writer thread to one reader thread: the reader gets the latest
/// posting, or carries on with what it had. The reader never waits; the writer may spin for the
/// length of one copy. T is a plain value, whose copy neither allocates nor waits.
template <typename T>
class AtomicTransfer {
    static_assert(std::is_nothrow_copy_assignable_v<T>);

  public:
    /// [control, one thread] Posts a value. One that was not taken yet is lost.
    void write(const T& value) noexcept {
        while (!take(kWriting)) {
        }
        m_value = value;
        m_written.fetch_add(1, std::memory_order_relaxed);
        release(kWriting);
    }

    /// [render, one thread] True, and `out` filled, if something was posted since the last read
    /// and the writer is not at it right now; otherwise `out` stays as it was.
    bool read(T& out) noexcept {
        // Looked at without the lock: what is missed here is seen at the next render.
        if (m_read.load(std::memory_order_relaxed) == m_written.load(std::memory_order_relaxed))
            return false;
        if (!take(kReading))
            return false;
        out = m_value;
        m_read.store(m_written.load(std::memory_order_relaxed), std::memory_order_release);
        release(kReading);
        return true;
    }

    /// [any thread] Postings so far.
    std::int32_t writeCount() const noexcept { return m_written.load(std::memory_order_relaxed); }
    /// [any thread] The posting that was taken last. Who sees its number also sees all that the
    /// reader did before it took it.
    std::int32_t readCount() const noexcept { return m_read.load(std::memory_order_acquire); }

  private:
    enum Holder : std::int32_t { kNobody = 0, kWriting = 1, kReading = 2 };

    // Both changes of the lock are sequentially consistent, so each holder sees all that the one
    // before it did to the value.
    bool take(std::int32_t holder) noexcept {
        std::int32_t expected = kNobody;
        return m_lock.compare_exchange_strong(expected, holder);
    }
    void release(std::int32_t holder) noexcept { m_lock.compare_exchange_strong(holder, kNobody); }

    T m_value{};
    std::atomic<std::int32_t> m_written{0};  // postings; wraps
    std::atomic<std::int32_t> m_read{0};     // m_written at the last successful read
    std::atomic<std::int32_t> m_lock{kNobody};
};
