#include "Sounds.h"

#include <cmath>
#include <cstring>
#include <numbers>

#include "SoundFiles.h"

std::string sounds::tone(std::uint32_t frames) {
    std::vector<std::int16_t> samples(frames);
    for (std::uint32_t i = 0; i < frames; ++i)
        samples[i] = std::int16_t(16000 * std::sin(2 * std::numbers::pi * (i % 200) / 200));
    return SoundFiles::wav({}, SoundFiles::bytes(samples));
}

std::optional<std::vector<std::int16_t>> sounds::rendered(const std::string& file) {
    constexpr std::size_t kHeader = 44;
    const std::string data = file.size() < kHeader ? "" : file.substr(kHeader);
    if (file != SoundFiles::wav({}, data) || data.size() % 2 != 0)
        return std::nullopt;
    std::vector<std::int16_t> samples(data.size() / 2);
    if (!samples.empty())
        std::memcpy(samples.data(), data.data(), data.size());
    return samples;
}
