#pragma once

#include <array>
#include <cstddef>

/// What can be done to the sound in use.
enum class SoundEdit {
    crop,
    cut,
    silence,
    fadeIn,
    fadeOut,
    normalise,
    reverse,
    join,
};

/// As the menu names them: "Undo Crop".
inline constexpr std::array<const char*, 8> kSoundEditNames{
    "Crop", "Cut", "Silence", "Fade In", "Fade Out", "Normalise", "Reverse", "Join",
};

inline const char* nameOf(SoundEdit edit) {
    return kSoundEditNames[static_cast<std::size_t>(edit)];
}
