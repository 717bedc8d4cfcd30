#pragma once

#include <QPointF>
#include <cstdint>
#include <span>

/// Of the speed, while Shift makes a turn fine.
inline constexpr float kFineTurn = 0.1f;

/// How far a finger has turned a dial: its way from where it came down, along the axes that act.
/// Positions are parts of the sweep, lengths points. [main]
class DialDrag {
  public:
    /// Bits of a dial's mode.
    static constexpr std::int32_t kHorizontal = 1;  // right raises
    static constexpr std::int32_t kVertical = 2;    // up raises

    void begin(QPointF at, float position);

    /// The position with the finger at `at`, not limited. A fine drag turns a tenth as far; a
    /// change between fine and coarse begins anew at `shown`, so that nothing jumps.
    float moved(QPointF at, std::int32_t mode, float speedRatio, bool fine, float shown);

    /// Whether the finger was at `at` last.
    bool isAt(QPointF at) const { return at == m_last; }
    QPointF touchDownAt() const { return m_touchDownAt; }
    float touchedValue() const { return m_touchedValue; }

    /// The first of `notches` that is near, or `position`.
    static float snapped(float position, std::span<const float> notches);

  private:
    QPointF m_touchDownAt;
    QPointF m_last;
    float m_touchedValue = 0;
    bool m_fine = false;
};
