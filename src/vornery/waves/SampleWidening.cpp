#include "SampleWidening.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <limits>

namespace {
constexpr std::size_t kBlock = 4096;
}

void widenSixteenBits(float* samples, std::size_t count, double step, Shared<float>& progress) {
    std::array<std::int16_t, kBlock> block;
    const auto* integers = reinterpret_cast<const char*>(samples);
    double done = progress;
    for (std::size_t end = count; end > 0;) {
        const std::size_t length = (end - 1) % kBlock + 1;
        end -= length;
        std::memcpy(block.data(), integers + end * sizeof(std::int16_t),
                    length * sizeof(std::int16_t));
        for (std::size_t i = 0; i < length; ++i)
            samples[end + i] = static_cast<float>(block[i]) * 3.0517578e-5f;
        done += step * static_cast<double>(length);
        progress = static_cast<float>(std::min(done, 1.0));
    }
}

void silenceNonFinite(float* samples, std::size_t count) {
    constexpr float kLargest = std::numeric_limits<float>::max();
    for (std::size_t i = 0; i < count; ++i)
        samples[i] = samples[i] >= -kLargest && samples[i] <= kLargest ? samples[i] : 0.f;
}
