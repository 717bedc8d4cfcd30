#pragma once

#include <array>
#include <string_view>

struct GrainModeItem {
    std::string_view name;
    std::string_view image;
};

/// In the order of the numbers that voices and presets hold, 0 to 6.
inline constexpr std::array<GrainModeItem, 7> kGrainModes = {{
    {"Static", "Grain-Static.png"},
    {"Linear", "Grain-Linear.png"},
    {"Bounce", "Grain-Bounce.png"},
    {"Chaos", "Grain-Chaos.png"},
    {"Drunken", "Grain-Drunken.png"},
    {"Scrambly", "Grain-Scrambly.png"},
    {"Split Linear", "Grain-SplitLinear.png"},
}};
