#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <vector>

#include "handoff/Shared.h"

/// A loop of samples that a render reads and writes and the main thread resizes. `buffer` is
/// always put in place before a `length` that needs it.
struct DelayLineData {
    std::atomic<float*> buffer{nullptr};   // owned by the DelayLine
    Shared<std::uint32_t> position = 0;    // next slot
    std::atomic<std::uint32_t> length{0};  // slots in use
};

/// Owns the memory of a delay line. An outgrown buffer is kept until two later renders have ended,
/// because the audio thread may still be in it, and is then freed on the main thread.
class DelayLine {
  public:
    /// `seconds` of zeros. Not a number or negative counts as 0.
    DelayLine(DelayLineData& data, float seconds);
    DelayLine(const DelayLine&) = delete;
    DelayLine& operator=(const DelayLine&) = delete;

    /// Seconds. [any thread]
    float delay() const;
    /// Growing keeps what the line holds and adds zeros; shrinking shortens the loop. [control]
    void setDelay(float seconds);
    /// Frees outgrown buffers that no render can be in any more. [control]
    void collect();

    /// What a render works on; position is below length. [render]
    struct Loop {
        float* buffer;
        std::uint32_t length;
        std::uint32_t position;

        std::uint32_t positionAfter(std::uint32_t frames) const {
            return static_cast<std::uint32_t>((std::uint64_t{position} + frames) % length);
        }
    };
    Loop enter() const noexcept;
    void leave(std::uint32_t position) noexcept;

  private:
    struct Outgrown {
        std::unique_ptr<float[]> buffer;
        std::uint32_t renders;  // ended when it was replaced
    };
    void grow(std::uint32_t length);

    DelayLineData& m_data;
    std::unique_ptr<float[]> m_buffer;
    std::vector<Outgrown> m_outgrown;
    std::atomic<std::uint32_t> m_renders{0};  // ended
};
