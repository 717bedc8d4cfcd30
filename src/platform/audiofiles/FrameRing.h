#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "audiounits/AudioUnitTypes.h"

/// Frames on their way from the audio thread to one other, in one stream format. Neither side ever
/// waits for the other.
class FrameRing {
  public:
    /// Room for at least `seconds`; all of its memory is touched here.
    FrameRing(const StreamDescription& format, double seconds);

    /// [render] Copies the first of `frames` frames that there is room for; returns how many.
    std::uint32_t push(const AudioBufferList& from, std::uint32_t frames) noexcept;
    /// [the other side] The oldest frames that lie in one piece, *frames at most; *frames becomes
    /// how many. They stay until `pop`.
    AudioBufferList front(std::uint32_t* frames) noexcept;
    void pop(std::uint32_t frames) noexcept;

    std::uint32_t bufferCount() const { return static_cast<std::uint32_t>(m_planes.size()); }
    std::uint32_t frameBytes() const { return m_format.mBytesPerFrame; }

  private:
    void copyIn(const AudioBufferList& from, std::uint32_t first, std::uint32_t at,
                std::uint32_t frames) noexcept;

    StreamDescription m_format;
    std::uint32_t m_room;                            // frames, a power of two
    std::vector<std::vector<std::byte>> m_planes;    // one for each buffer of the format
    alignas(64) std::atomic<std::uint64_t> m_in{0};  // frames ever pushed, and popped
    alignas(64) std::atomic<std::uint64_t> m_out{0};
};
