#pragma once

#include <optional>
#include <string>

#include "parameters/Preset.h"

/// A preset that a user has named: an existing file (no folder) first, else one from the user's
/// store, else a shipped one. Nothing is written.
struct PresetArgument {
    std::optional<Preset> preset;
    bool isStored = false;  // from a store, whose sounds have names and not paths

    /// Without a preset `error` is one line.
    static PresetArgument find(const std::string& choice, std::string& error);
};

/// Where the sound of a preset from a store lies. For one that is gone the user is told that the
/// default sound stands in.
std::string storedSoundPath(const Preset& preset);
