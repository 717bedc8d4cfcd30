#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <numbers>

#include "SteadySum.h"

/// The running phase of a modulator: p becomes p + step, rounded to a float, and loses whole turns
/// of 2 pi while it is beyond one. Over a turn the sum is steady between two powers of two (see
/// SteadyStep); these stretches are the same in every turn and are prepared once a render.
class RingPhase {
  public:
    /// `frames`: how many will be asked for, to judge whether preparing is worth it.
    RingPhase(float step, std::uint32_t frames) noexcept;

    /// The phase `frames` steps after `phase`. `write(k, p, sum)` is told of every stretch on the
    /// way: its first frame, its phase there, and how it goes on.
    template <typename Write>
    float run(float phase, std::uint32_t frames, Write write) const noexcept;

    /// Without the turns that `phase` is too far. One at a time is what is wanted; a phase so far
    /// out that turns do not change it any more goes back to 0, and so does one that is not a
    /// number.
    static float wrapped(float phase) noexcept;

    /// The smallest float above a turn.
    static constexpr float kTurnOver = 6.2831855f;

  private:
    struct Stretch {
        float end;
        float advance;
        float inverse;  // a hair less than 1 / advance
    };
    static constexpr float kFirst = 0.25f;  // no stretch begins below
    static constexpr int kMost = 5;

    float m_step;
    float m_firstStretch = 0.f;  // where it begins
    int m_count = 0;
    Stretch m_stretches[kMost];
};

inline float RingPhase::wrapped(float phase) noexcept {
    constexpr double kTurn = 2 * std::numbers::pi;
    if (phase >= 0.f && phase < kTurnOver)
        return phase;
    while (phase > kTurn) {
        const auto next = static_cast<float>(phase - kTurn);
        if (!(next < phase))
            return 0.f;
        phase = next;
    }
    return std::isfinite(phase) ? phase : 0.f;
}

template <typename Write>
float RingPhase::run(float phase, std::uint32_t frames, Write write) const noexcept {
    std::uint32_t k = 0;
    auto oneStep = [&] {
        write(k++, phase, SteadySum{0.f, 1});
        phase += m_step;
    };
    while (k < frames) {
        if (!(phase >= 0.f && phase < kTurnOver && m_count > 0)) {
            oneStep();
            phase = wrapped(phase);
            continue;
        }
        while (k < frames && phase < m_firstStretch)
            oneStep();
        for (int i = 0; i < m_count; ++i) {
            const Stretch& stretch = m_stretches[i];
            while (k < frames && phase < stretch.end) {
                // After one step the sum is even where that matters.
                oneStep();
                if (k == frames || !(phase < stretch.end))
                    break;
                const float steps = (stretch.end - phase) * stretch.inverse;
                const SteadySum steady{stretch.advance,
                                       std::min(static_cast<std::uint32_t>(steps) + 1, frames - k)};
                write(k, phase, steady);
                k += steady.count;
                phase = steady.last(phase) + m_step;
            }
        }
        phase = wrapped(phase);
    }
    return phase;
}
