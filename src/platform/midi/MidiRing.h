#pragma once

#include <array>
#include <atomic>
#include <memory>
#include <optional>
#include <span>

#include "midi/HeldNotes.h"
#include "midi/MidiMessages.h"
#include "midi/MidiTypes.h"

/// Messages on their way from one thread that must not wait to one that may. Bounded: when it is
/// nearly full, only the releases of notes that it has let in are taken, for which there is always
/// room; everything else is dropped and counted.
class MidiRing {
  public:
    static constexpr std::size_t kBytes = 1 << 16;
    /// Longer messages are dropped.
    static constexpr std::size_t kLongest = kBytes / 2;

    /// [producer] False if it was dropped, but for the releases in it.
    bool push(MIDITimeStamp time, std::span<const std::uint8_t> message) noexcept;
    /// [producer] Releases every note that is held, and pedals.
    void pushReleases(MIDITimeStamp time) noexcept;

    struct Message {
        MIDITimeStamp time;
        std::span<const std::uint8_t> bytes;
    };
    /// [consumer] The oldest message, copied into `memory`, which has room for kLongest bytes.
    std::optional<Message> pop(std::span<std::uint8_t> memory) noexcept;

    /// [any thread]
    std::uint64_t dropped() const noexcept { return m_dropped.load(std::memory_order_relaxed); }

  private:
    static constexpr std::size_t kHeaderBytes = sizeof(MIDITimeStamp) + sizeof(std::uint32_t);
    static constexpr std::size_t kNoteBytes = 3;
    static constexpr std::size_t kReserve =
        HeldNotes::kMost * (kHeaderBytes + kNoteBytes) + kHeaderBytes + kMidiReleaseAll.size();

    std::size_t room() const noexcept;
    void write(MIDITimeStamp time, std::span<const std::uint8_t> message) noexcept;
    void put(const void* from, std::size_t bytes, std::size_t at) noexcept;
    void get(void* to, std::size_t bytes, std::size_t at) const noexcept;
    void release(MIDITimeStamp time, std::uint8_t note) noexcept;

    std::unique_ptr<std::array<std::uint8_t, kBytes>> m_bytes =
        std::make_unique<std::array<std::uint8_t, kBytes>>();
    std::atomic<std::size_t> m_written{0};  // bytes ever; of the producer
    std::atomic<std::size_t> m_read{0};     // bytes ever; of the consumer
    std::atomic<std::uint64_t> m_dropped{0};
    HeldNotes m_held;          // of the producer
    bool m_holdsMore = false;  // of the producer
};
