#pragma once

#include <cmath>
#include <optional>

/// Keeps a dial from jumping to where a controller happens to stand: the controller turns it only
/// once it has met it, and after the dial was changed otherwise it has to meet it anew. Positions
/// are 0 to 1 of the way. A plain value.
class SoftTakeover {
  public:
    static constexpr float kNear = 2.f / 127;

    /// The controller moved while the dial stood there: whether the dial follows.
    bool follows(float controller, float dial) {
        const std::optional<float> before = m_controller;
        m_controller = controller;
        const bool follows = leads(dial) || std::abs(controller - dial) <= kNear ||
                             (before && (*before - dial) * (controller - dial) < 0);
        m_led = follows ? std::optional(controller) : std::nullopt;
        return follows;
    }

  private:
    // Nobody has moved the dial since, other than by rounding.
    bool leads(float dial) const { return m_led && std::abs(*m_led - dial) < 0.5f / 127; }

    std::optional<float> m_controller;
    std::optional<float> m_led;  // where the controller has put the dial
};
