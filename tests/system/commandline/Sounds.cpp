#include "Sounds.h"

#include <cmath>
#include <cstring>
#include <numbers>

namespace sounds {
namespace {

constexpr std::size_t kHeader = 44;

template <typename Number>
std::string little(Number number) {
    std::string text(sizeof number, '\0');
    for (std::size_t i = 0; i < sizeof number; ++i)
        text[i] = char(std::uint64_t(number) >> (8 * i) & 0xff);
    return text;
}

}  // namespace

std::string bytesOf(const Wav& wav) {
    const auto frameBytes = std::uint16_t(wav.channels * wav.bits / 8);
    const std::uint32_t size = wav.claimed.value_or(std::uint32_t(wav.data.size()));
    return "RIFF" + little(size + 36) + "WAVEfmt " + little(std::uint32_t(16)) + little(wav.tag) +
           little(wav.channels) + little(wav.rate) + little(wav.rate * frameBytes) +
           little(frameBytes) + little(wav.bits) + "data" + little(size) + wav.data;
}

std::string tone(std::uint32_t frames) {
    Wav wav;
    for (std::uint32_t i = 0; i < frames; ++i) {
        const double phase = 2 * std::numbers::pi * (i % 200) / 200;
        wav.data += little(std::uint16_t(std::int16_t(16000 * std::sin(phase))));
    }
    return bytesOf(wav);
}

std::optional<std::vector<std::int16_t>> rendered(const std::string& file) {
    Wav like;
    like.data = file.size() < kHeader ? "" : file.substr(kHeader);
    if (file != bytesOf(like) || like.data.size() % 2 != 0)
        return std::nullopt;
    std::vector<std::int16_t> samples(like.data.size() / 2);
    if (!samples.empty())
        std::memcpy(samples.data(), like.data.data(), like.data.size());
    return samples;
}

}  // namespace sounds
