#pragma once

#include <cstddef>
#include <span>

#include "audiounits/devices/SampleRateLibrary.h"

/// One mono stream from one rate to another, by band-limited interpolation (libsamplerate's sinc
/// converter of medium quality: 121 dB, passes nine tenths of the band, about 1 ms of look-ahead).
class RateConverter {
  public:
    /// [control] Frames per second. All memory is taken here.
    RateConverter(double from, double to);
    ~RateConverter();
    RateConverter(const RateConverter&) = delete;
    RateConverter& operator=(const RateConverter&) = delete;

    /// False where the library is not installed or the rates are out of its range (1:256).
    bool usable() const { return m_state != nullptr; }

    struct Step {
        std::size_t used = 0;
        std::size_t made = 0;
    };
    /// [render] Takes what it can of `in`, which may be empty, and fills what it can of `out`.
    Step process(std::span<const float> in, std::span<float> out) noexcept;

  private:
    const SampleRateLibrary* m_library;
    SRC_STATE* m_state = nullptr;
    double m_ratio;
};
