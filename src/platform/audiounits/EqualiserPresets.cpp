#include "audiounits/EqualiserPresets.h"

#include <algorithm>
#include <numbers>
#include <vector>

namespace {

using EqualiserPresets::kBandHertz;
using EqualiserPresets::Preset;
using Gains = std::array<double, kBandHertz.size()>;

// Decibels at 32, 64, 125, 250, 500 Hz, 1, 2, 4, 8, 16 kHz.
constexpr Preset kPresets[] = {
    {"Flat", {0, 0, 0, 0, 0, 0, 0, 0, 0, 0}},
    {"Bass Boost", {6, 6, 4, 2, 0, 0, 0, 0, 0, 0}},
    {"Bass Cut", {-8, -6, -4, -2, 0, 0, 0, 0, 0, 0}},
    {"Treble Boost", {0, 0, 0, 0, 0, 0, 1, 3, 5, 6}},
    {"Treble Cut", {0, 0, 0, 0, 0, 0, -2, -4, -6, -8}},
    {"Bass and Treble", {5, 4, 2, 0, -1, -1, 0, 2, 4, 5}},
    {"Quiet Listening", {6, 5, 3, 1, 0, 0, 0, 1, 2, 4}},
    {"Warm", {1, 2, 3, 3, 1, 0, -1, -2, -2, -3}},
    {"Bright", {-1, -1, 0, 0, 0, 1, 2, 4, 4, 3}},
    {"Dark", {2, 2, 2, 1, 0, -1, -3, -5, -7, -9}},
    {"Soft", {0, 0, 1, 1, 0, -1, -3, -4, -3, -2}},
    {"Presence", {0, 0, 0, 0, 0, 1, 3, 5, 2, 0}},
    {"Air", {0, 0, 0, 0, 0, 0, 0, 1, 3, 6}},
    {"Full Middle", {-2, -1, 0, 2, 4, 4, 2, 0, -1, -2}},
    {"Hollow Middle", {3, 3, 1, -2, -5, -5, -2, 1, 3, 3}},
    {"Spoken Word", {-9, -6, -2, 0, 1, 3, 4, 3, 0, -3}},
    {"Singing Voice", {-4, -3, -1, 0, 1, 3, 4, 3, 2, 1}},
    {"Bowed Strings", {-1, 0, 1, 2, 0, 0, -1, 1, 2, 2}},
    {"Plucked Strings", {-2, 0, 2, 1, -1, 0, 2, 3, 3, 1}},
    {"Piano", {1, 2, 1, 0, -1, 0, 2, 3, 2, 2}},
    {"Drums", {4, 5, 2, -2, -3, -1, 1, 3, 4, 3}},
    {"Small Speakers", {-9, -3, 4, 4, 2, 0, 0, 1, 3, 4}},
    {"Headphones", {3, 3, 2, 1, 0, 0, -1, -2, 1, 2}},
    {"Large Room", {-3, -3, -4, -4, -2, 0, 1, 2, 2, 1}},
    {"Old Telephone", {-12, -12, -12, -6, 2, 4, 4, 0, -12, -12}},
};

Biquad band(std::size_t i, double decibels) {
    // The outermost bands go on to the ends of hearing, so the edge towards their neighbour counts.
    if (i == 0)
        return Biquad::lowShelf(kBandHertz[i] * std::numbers::sqrt2, decibels);
    if (i == kBandHertz.size() - 1)
        return Biquad::highShelf(kBandHertz[i] / std::numbers::sqrt2, decibels);
    return Biquad::peak(kBandHertz[i], decibels);
}

FilterCascade::Curve bands(const Gains& decibels) {
    FilterCascade::Curve curve;
    for (std::size_t i = 0; i < curve.size(); ++i)
        curve[i] = band(i, decibels[i]);
    return curve;
}

double response(const FilterCascade::Curve& curve, double hertz) {
    double decibels = 0;
    for (const Biquad& filter : curve)
        decibels += filter.decibelsAt(hertz);
    return decibels;
}

// Each band also lifts its neighbours, by about a fifth of its own gain. Taking back what is too
// much, again and again, converges because a band's own part is the largest.
FilterCascade::Curve curveOf(const Preset& preset) {
    constexpr int kTurns = 20;  // from then on within 0.01 dB
    Gains gains;
    std::copy(preset.decibels.begin(), preset.decibels.end(), gains.begin());
    auto curve = bands(gains);
    for (int turn = 0; turn < kTurns; ++turn) {
        for (std::size_t i = 0; i < gains.size(); ++i)
            gains[i] += preset.decibels[i] - response(curve, kBandHertz[i]);
        curve = bands(gains);
    }
    return curve;
}

}  // namespace

std::span<const EqualiserPresets::Preset> EqualiserPresets::all() {
    return kPresets;
}

const FilterCascade::Curve& EqualiserPresets::curve(std::size_t number) {
    static const std::vector<FilterCascade::Curve> curves = [] {
        std::vector<FilterCascade::Curve> made;
        for (const Preset& preset : kPresets)
            made.push_back(curveOf(preset));
        return made;
    }();
    return curves[number];
}
