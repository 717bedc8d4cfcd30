#include "wave/Fling.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr std::uint64_t kMeasured = 80;  // milliseconds before the end that give the speed
constexpr double kSlowest = 30;          // points per second, below which nothing flies
constexpr double kFastest = 6000;
constexpr double kFriction = 0.35;  // seconds in which the speed falls to 1/e: about what a
                                    // list on a telephone does

}  // namespace

void Fling::begin(std::uint64_t time, double x) {
    m_velocity = 0;
    m_count = 0;
    moved(time, x);
}

void Fling::moved(std::uint64_t time, double x) {
    m_places[m_count++ % kPlaces] = {time, x};
}

bool Fling::release(std::uint64_t time) {
    m_velocity = 0;
    if (m_count < 2 || time - ago(0).time > kMeasured)
        return false;
    std::size_t back = 1;
    const std::size_t known = std::min(m_count, kPlaces) - 1;
    while (back < known && time - ago(back).time < kMeasured)
        ++back;
    const double elapsed = double(std::max<std::uint64_t>(1, ago(0).time - ago(back).time));
    const double velocity = 1000 * (ago(0).x - ago(back).x) / elapsed;
    if (std::abs(velocity) > kSlowest)
        m_velocity = std::clamp(velocity, -kFastest, kFastest);
    return flying();
}

double Fling::step(double seconds) {
    const double left = std::exp(-seconds / kFriction);
    const double way = m_velocity * kFriction * (1 - left);
    m_velocity *= left;
    if (std::abs(m_velocity) < kSlowest)
        m_velocity = 0;
    return way;
}
