#include "TunedLoop.h"

#include <algorithm>
#include <cmath>
#include <numbers>

TunedLoop::TunedLoop(double hertz, double dullness, double fadeSeconds) : m_dullness(dullness) {
    const double turn = 2 * std::numbers::pi * hertz / kFramesPerSecond;
    const double real = 1 - dullness + dullness * std::cos(turn);
    const double imaginary = dullness * std::sin(turn);
    const double loss = std::pow(10., -3 / (hertz * fadeSeconds));
    m_gain = std::min(loss / std::hypot(real, imaginary), 1.);

    const double period = kFramesPerSecond / hertz - std::atan2(imaginary, real) / turn;
    const double whole =
        std::floor(period - 0.3);  // the rest, 0.3 to 1.3 frames, suits the all-pass
    const double rest = period - whole;
    m_allPass = std::sin((1 - rest) * turn / 2) / std::sin((1 + rest) * turn / 2);
    m_delay.resize(std::size_t(whole));
}

double TunedLoop::process(double x) {
    const double out = m_delay[m_position];
    const double dulled = (1 - m_dullness) * out + m_dullness * m_lastOut;
    m_lastOut = out;
    m_allPassOut = m_allPass * (dulled - m_allPassOut) + m_allPassIn;
    m_allPassIn = dulled;
    const double sum = x + m_gain * m_allPassOut;
    m_delay[m_position] = sum;
    m_position = (m_position + 1) % m_delay.size();
    return sum;
}
