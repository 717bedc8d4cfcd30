#include "audiounits/Placement.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace {

constexpr float kPi = std::numbers::pi_v<float>;

float radians(float degrees) {
    return degrees * (kPi / 180.f);
}

// The clamped inverse distance model of the OpenAL 1.1 Specification and Reference (2005), section
// 3.4, with a rolloff factor of 1: half the amplitude at twice the distance.
float level(const Placement& place) {
    const float metres =
        std::clamp(place.distanceMetres, Panning::kReferenceMetres, Panning::kMaximumMetres);
    return Panning::kReferenceMetres / metres * std::pow(10.f, place.gainDecibels / 20.f);
}

}  // namespace

// The angle to the side, not the azimuth, is what two loudspeakers can show.
ChannelGains Panning::stereo(const Placement& place) {
    const float side =
        std::sin(radians(place.azimuthDegrees)) * std::cos(radians(place.elevationDegrees));
    const float lateral = std::asin(std::clamp(side, -1.f, 1.f));
    const float pan = (lateral + kPi / 2) / 2;  // 0 is left, pi / 2 is right
    const float loudness = level(place);
    return {loudness * std::cos(pan), loudness * std::sin(pan)};
}

ChannelGains Panning::mono(const Placement& place) {
    return {level(place), level(place)};
}
