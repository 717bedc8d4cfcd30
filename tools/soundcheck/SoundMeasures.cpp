#include "SoundMeasures.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <numbers>
#include <vector>

namespace {

constexpr double kRate = 44100;
constexpr std::size_t kWindow = 4096;
constexpr std::size_t kGapBlock = 441;     // 10 ms
constexpr float kSilence = 0.001f;         // -60 dB
constexpr float kFull = 32766.5f / 32768;  // what 16 bits end at

/// In place; the size is a power of two. J. W. Cooley and J. W. Tukey, 1965.
void transform(std::vector<std::complex<double>>& data) {
    const std::size_t count = data.size();
    for (std::size_t i = 1, j = 0; i < count; ++i) {
        std::size_t bit = count >> 1;
        for (; j & bit; bit >>= 1)
            j ^= bit;
        j ^= bit;
        if (i < j)
            std::swap(data[i], data[j]);
    }
    for (std::size_t length = 2; length <= count; length *= 2) {
        const auto turn = std::polar(1., -2 * std::numbers::pi / double(length));
        for (std::size_t start = 0; start < count; start += length) {
            std::complex<double> w = 1;
            for (std::size_t i = start; i < start + length / 2; ++i, w *= turn) {
                const auto even = data[i], odd = data[i + length / 2] * w;
                data[i] = even + odd;
                data[i + length / 2] = even - odd;
            }
        }
    }
}

double centroid(std::span<const float> sound) {
    double weighted = 0, sum = 0;
    std::vector<std::complex<double>> window(kWindow);
    for (std::size_t start = 0; start + kWindow <= sound.size(); start += kWindow) {
        for (std::size_t i = 0; i < kWindow; ++i) {
            const double angle = 2 * std::numbers::pi * double(i) / kWindow;
            window[i] = double(sound[start + i]) * (0.5 - 0.5 * std::cos(angle));
        }
        transform(window);
        for (std::size_t bin = 1; bin < kWindow / 2; ++bin) {
            const double magnitude = std::abs(window[bin]);
            weighted += magnitude * double(bin) * kRate / kWindow;
            sum += magnitude;
        }
    }
    return sum > 0 ? weighted / sum : 0;
}

double longestGap(std::span<const float> sound) {
    std::size_t gap = 0, longest = 0;
    for (std::size_t start = 0; start + kGapBlock <= sound.size(); start += kGapBlock) {
        const auto block = sound.subspan(start, kGapBlock);
        if (std::ranges::all_of(block, [](float x) { return std::abs(x) < kSilence; })) {
            ++gap;
        } else {
            longest = std::max(longest, gap);
            gap = 0;
        }
    }
    return double(longest * kGapBlock) / kRate;
}

}  // namespace

SoundMeasures measure(std::span<const float> sound) {
    SoundMeasures result;
    result.seconds = double(sound.size()) / kRate;
    for (const float sample : sound) {
        result.peak = std::max(result.peak, std::abs(double(sample)));
        result.clips += std::abs(sample) >= kFull;
    }
    result.loudness = integratedLoudness(sound);
    result.centroidHertz = centroid(sound);
    result.gapSeconds = longestGap(sound);
    return result;
}
