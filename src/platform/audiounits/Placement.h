#pragma once

/// Where a sound is heard from, seen by a listener who faces azimuth 0.
struct Placement {
    float azimuthDegrees = 0.f;    // -180 to 180; 90 is to the right
    float elevationDegrees = 0.f;  // -90 to 90; 90 is above
    float distanceMetres = 1.f;    // 0 or more
    float gainDecibels = 0.f;

    friend bool operator==(const Placement&, const Placement&) = default;
};

/// Factors of amplitude on the two output channels.
struct ChannelGains {
    float left = 1.f;
    float right = 1.f;

    friend bool operator==(const ChannelGains&, const ChannelGains&) = default;
};

namespace Panning {

inline constexpr float kReferenceMetres = 1.f;  // nearer is not louder
inline constexpr float kMaximumMetres = 100.f;  // farther is not softer

/// [any thread] Equal power between two channels: the squares of both gains add up to the same in
/// every direction. Two channels tell only how far to a side a sound is, so what is behind the
/// listener sounds as its mirror image in front, and what is above as if it were nearer the middle.
ChannelGains stereo(const Placement& place);
/// [any thread] Distance and gain alone.
ChannelGains mono(const Placement& place);

}  // namespace Panning
