#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "audiounits/Biquad.h"

/// Ten filters one behind the other, on two channels at once. [render] but for the constructor.
class FilterCascade {
  public:
    static constexpr std::size_t kStages = 10;
    using Curve = std::array<Biquad, kStages>;

    explicit FilterCascade(const Curve& curve);

    /// Moves to another curve over the next 512 frames (12 ms: no click, and at once to the ear).
    /// `curve` must outlive that. Coefficients move on straight lines, where filters stay stable:
    /// the stable values of a1 and a2 are a triangle.
    void glideTo(const Curve& curve) noexcept;
    /// Filters in place; both channels are equally long.
    void process(std::span<float> left, std::span<float> right) noexcept;

    /// Whether nothing is heard any more of earlier frames and no glide is under way.
    bool resting() const noexcept;
    /// Forgets earlier frames.
    void clear() noexcept { m_states = {}; }

  private:
    using Pair = double __attribute__((vector_size(16)));  // left and right
    struct State {
        Pair first;
        Pair second;
    };
    using States = std::array<State, kStages>;

    static Pair next(const Curve& curve, States& states, Pair frame) noexcept;
    void glide() noexcept;

    Curve m_now;
    Curve m_from;                   // where the glide began
    const Curve* m_to = nullptr;    // where it ends
    std::uint32_t m_glideLeft = 0;  // frames
    States m_states{};
};
