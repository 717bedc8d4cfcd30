#pragma once

#include <optional>

#include "defaults/UserDefaults.h"
#include "parameters/Parameters.h"

/// From the velocity of a key to the one that it is played with.
enum class VelocityCurve : std::uint8_t { linear, soft, hard, fixed };

/// What the player has set for MIDI controllers. Kept in the user defaults.
struct MidiControlSettings {
    static constexpr int kAllChannels = 0;
    static constexpr int kMostBendSemitones = 24;

    bool enabled = false;                   // "Use MIDI controllers"; without it all below rests
    int channel = kAllChannels;             // 1 to 16, or all
    int bendSemitones = 2;                  // each way, 0 to 24
    std::optional<ParameterId> modulation;  // what the modulation wheel turns
    VelocityCurve curve = VelocityCurve::linear;

    bool operator==(const MidiControlSettings&) const = default;
    /// Values that make no sense are read as the initial ones.
    static MidiControlSettings load(const UserDefaults& defaults);
    void keep(UserDefaults& defaults) const;
};
