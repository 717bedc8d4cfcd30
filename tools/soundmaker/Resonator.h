#pragma once

#include <cmath>
#include <numbers>

#include "Sound.h"

/// A band-pass with two poles and a peak gain of 1 wherever it stands: Julius O. Smith and James B.
/// Angell, "A constant-gain digital resonator tuned by a single coefficient", 1982.
class Resonator {
  public:
    Resonator() = default;
    Resonator(double hertz, double bandwidthHertz) { set(hertz, bandwidthHertz); }

    void set(double hertz, double bandwidthHertz) {
        const double radius = std::exp(-std::numbers::pi * bandwidthHertz / kFramesPerSecond);
        m_a1 = 2 * radius * std::cos(2 * std::numbers::pi * hertz / kFramesPerSecond);
        m_a2 = -radius * radius;
        m_gain = (1 - radius * radius) / 2;
    }
    double process(double x) {
        const double y = m_gain * (x - m_x2) + m_a1 * m_y1 + m_a2 * m_y2;
        m_x2 = m_x1;
        m_x1 = x;
        m_y2 = m_y1;
        m_y1 = y;
        return y;
    }

  private:
    double m_gain = 0, m_a1 = 0, m_a2 = 0;
    double m_x1 = 0, m_x2 = 0, m_y1 = 0, m_y2 = 0;
};
