#include "Hearing.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace {

constexpr double kRate = 44100;
constexpr std::size_t kStretch = 4410;  // frames: 100 ms
constexpr double kLowest = 40;          // hertz, of the lowest band
constexpr double kBandsPerOctave = 2.2;
constexpr float kOnset = 0.002f;

double decibels(double power) {
    return 10 * std::log10(power + 1e-20);
}

/// Power at a frequency (G. Goertzel, An Algorithm for the Evaluation of Finite Trigonometric
/// Series, 1958).
double powerAt(double hertz, std::span<const float> frames) {
    const double turn = 2 * std::cos(2 * std::numbers::pi * hertz / kRate);
    double last = 0;
    double before = 0;
    for (const float frame : frames) {
        const double now = frame + turn * last - before;
        before = last;
        last = now;
    }
    const double power = last * last + before * before - turn * last * before;
    return power * 4 / (double(frames.size()) * double(frames.size()));
}

}  // namespace

Heard::Heard(std::span<const float> mono) {
    const auto onset =
        std::ranges::find_if(mono, [](float frame) { return std::abs(frame) > kOnset; });
    std::span rest(onset, mono.end());
    for (; rest.size() >= kStretch; rest = rest.subspan(kStretch)) {
        m_stretches.push_back(measure(rest.first(kStretch)));
        m_level = std::max(m_level, m_stretches.back().level);
    }
}

/// Four frequencies stand for each band.
Heard::Stretch Heard::measure(std::span<const float> frames) {
    Stretch stretch;
    for (std::size_t band = 0; band < kBands; ++band) {
        double power = 0;
        for (int part = 0; part < 4; ++part)
            power +=
                powerAt(kLowest * std::exp2((double(band) + part / 4.0) / kBandsPerOctave), frames);
        stretch.bands[band] = decibels(power);
    }
    double sum = 0;
    for (const float frame : frames)
        sum += double(frame) * frame;
    stretch.level = decibels(sum / double(frames.size()));
    return stretch;
}

double Heard::differenceTo(const Heard& other) const {
    const std::size_t count = std::max(m_stretches.size(), other.m_stretches.size());
    Mean bands, levels;
    for (std::size_t i = 0; i < count; ++i) {
        const Stretch ours = stretch(i);
        const Stretch theirs = other.stretch(i);
        for (std::size_t band = 0; band < kBands; ++band)
            bands.add(ours.bands[band], theirs.bands[band]);
        levels.add(ours.level, theirs.level);
    }
    return std::max(bands.difference(), levels.difference());
}

Heard::Stretch Heard::stretch(std::size_t index) const {
    return index < m_stretches.size() ? m_stretches[index] : Stretch();
}

void Heard::Mean::add(double ours, double theirs) {
    if (ours <= kFloor && theirs <= kFloor)
        return;
    sum += std::abs(std::max(ours, kFloor) - std::max(theirs, kFloor));
    ++count;
}
