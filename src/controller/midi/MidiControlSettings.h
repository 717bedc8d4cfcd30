#pragma once

#include <optional>

#include "defaults/UserDefaults.h"
#include "midi/VelocityCurve.h"
#include "parameters/Parameters.h"

/// What the player has set for MIDI controllers. Kept in the user defaults.
struct MidiControlSettings {
    static constexpr int kAllChannels = 0;
    static constexpr int kMostBendSemitones = 24;

    bool enabled = false;        // "Use MIDI controllers"; without it all below rests
    int channel = kAllChannels;  // 1 to 16, or all
    int bendSemitones = 2;       // each way, 0 to 24
    std::optional<ParameterId> modulation = {};  // what the modulation wheel turns: one with a dial
    VelocityCurve curve = VelocityCurve::linear;

    bool operator==(const MidiControlSettings&) const = default;
    /// Values that make no sense become the initial ones.
    MidiControlSettings repaired() const;
    static MidiControlSettings load(const UserDefaults& defaults);
    void keep(UserDefaults& defaults) const;
};
