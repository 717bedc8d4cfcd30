#pragma once

#include <cstdint>

#include "VornSequenceScrubberData.h"

/// The render side of a scrubber: short grains at the place that was posted last, each fading in
/// over 44100 / fadeRate frames and out over as many, on two heads in turn. A grain begins when the
/// one before is at its loudest, or when it has faded.
class ScrubRender {
  public:
    explicit ScrubRender(VornSequenceScrubberData& data) : m_data(data), m_gain(data.gain) {}

    /// Takes what was posted. `mayKeep`: whether what was posted before may still be looked at.
    void take(bool mayKeep) noexcept;
    /// Writes `frames` stereo frames. Returns how many of them come from the sound; the others, at
    /// the end, are silence.
    std::uint32_t write(std::int16_t* out, std::uint32_t frames) noexcept;

  private:
    using Head = VornSequenceScrubberPlayHead;

    void forgetAll();
    void begin(Head& head, float step);
    void turn(Head& head, Head& other);
    std::uint32_t writeOne(Head& head, Head& other, std::uint32_t frames, std::int16_t* out);
    std::uint32_t writeBoth(std::uint32_t frames, std::int16_t* out);

    VornSequenceScrubberData& m_data;
    const float m_gain;
};
