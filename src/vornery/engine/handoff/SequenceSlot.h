#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <cstring>
#include <type_traits>

/// A record that several threads read and write as a whole, without locks. A sequence number is odd
/// while a write is under way; a reader whose number changed under it has read a mixture and drops
/// it. The audio thread tries once and lives with a refusal, other threads try until they succeed.
/// After H.-J. Boehm, "Can seqlocks get along with programming language memory models?", 2012:
/// the words themselves are atomics, so that no fence is needed.
template <typename T>
class SequenceSlot {
    static_assert(std::is_trivially_copyable_v<T>);
    using Word = std::uint64_t;
    static constexpr std::size_t kWords = (sizeof(T) + sizeof(Word) - 1) / sizeof(Word);

  public:
    explicit SequenceSlot(const T& value = T{}) noexcept { tryWrite(value); }
    SequenceSlot(const SequenceSlot&) = delete;
    SequenceSlot& operator=(const SequenceSlot&) = delete;

    /// [any thread] False, with `out` untouched, when a write was under way.
    bool tryRead(T& out) const noexcept {
        const std::uint32_t before = m_sequence.load(std::memory_order_acquire);
        if (before & 1)
            return false;
        std::array<Word, kWords> words;
        for (std::size_t i = 0; i < kWords; ++i)
            words[i] = m_words[i].load(std::memory_order_acquire);
        if (m_sequence.load(std::memory_order_relaxed) != before)
            return false;
        std::memcpy(static_cast<void*>(&out), words.data(), sizeof(T));
        return true;
    }

    /// [any thread] False, with nothing written, when another write was under way.
    bool tryWrite(const T& value) noexcept {
        std::uint32_t before = m_sequence.load(std::memory_order_relaxed);
        if ((before & 1) ||
            !m_sequence.compare_exchange_strong(before, before + 1, std::memory_order_acquire))
            return false;
        std::array<Word, kWords> words{};
        std::memcpy(words.data(), &value, sizeof(T));
        for (std::size_t i = 0; i < kWords; ++i)
            m_words[i].store(words[i], std::memory_order_release);
        m_sequence.store(before + 2, std::memory_order_release);
        return true;
    }

    /// [any thread but render] A write takes a few instructions, so these hardly ever turn twice.
    T read() const noexcept {
        T value;
        while (!tryRead(value)) {
        }
        return value;
    }
    void write(const T& value) noexcept {
        while (!tryWrite(value)) {
        }
    }

  private:
    std::atomic<std::uint32_t> m_sequence{0};
    std::array<std::atomic<Word>, kWords> m_words{};
};
