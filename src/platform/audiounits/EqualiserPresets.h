#pragma once

#include <array>
#include <span>

#include "audiounits/FilterCascade.h"

/// The equaliser's bands and its factory presets.
namespace EqualiserPresets {

/// Centres of the bands: octaves.
inline constexpr std::array<double, FilterCascade::kStages> kBandHertz{
    32, 64, 125, 250, 500, 1000, 2000, 4000, 8000, 16000};

struct Preset {
    const char* name;
    std::array<float, kBandHertz.size()> decibels;  // at the centres of the bands
};

/// Presets by number. Number 0 is Flat.
std::span<const Preset> all();

/// Filters whose response at the centre of each band is what preset `number` says, the
/// neighbours' share taken into account. Worked out once, for all presets; valid for ever.
/// [control]
const FilterCascade::Curve& curve(std::size_t number);

}  // namespace EqualiserPresets
