#include "Tone.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace {

constexpr std::size_t kWindow = 2048;
constexpr double kSilence = 1e-3;

double median(std::vector<double> values) {
    if (values.empty())
        return 0;
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::ranges::nth_element(values, middle);
    return *middle;
}

double effective(std::span<const float> window) {
    double sum = 0;
    for (const float sample : window)
        sum += static_cast<double>(sample) * static_cast<double>(sample);
    return std::sqrt(sum / static_cast<double>(window.size()));
}

// From the first rising zero crossing to the last, each placed between two frames.
double crossingsPerFrame(std::span<const float> window) {
    double first = -1, last = -1;
    int count = 0;
    for (std::size_t i = 1; i < window.size(); ++i) {
        if (window[i - 1] >= 0 || window[i] < 0)
            continue;
        last = static_cast<double>(i) -
               static_cast<double>(window[i]) / static_cast<double>(window[i] - window[i - 1]);
        if (count++ == 0)
            first = last;
    }
    return count < 2 ? 0 : (count - 1) / (last - first);
}

}  // namespace

Tone Tone::measure(std::span<const float> mono, double rate) {
    std::vector<double> hertz, amplitudes;
    for (; mono.size() >= kWindow; mono = mono.subspan(kWindow)) {
        const auto window = mono.first(kWindow);
        const double level = effective(window);
        if (level < kSilence)
            continue;
        hertz.push_back(crossingsPerFrame(window) * rate);
        amplitudes.push_back(level * std::numbers::sqrt2);
    }
    return {median(hertz), median(amplitudes), hertz.size()};
}

std::vector<float> channelOf(std::span<const float> interleaved, std::size_t channels,
                             std::size_t channel) {
    std::vector<float> mono;
    for (std::size_t i = channel; i < interleaved.size(); i += channels)
        mono.push_back(interleaved[i]);
    return mono;
}
