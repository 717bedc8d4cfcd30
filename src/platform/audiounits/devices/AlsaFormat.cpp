#include "audiounits/devices/AlsaFormat.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>

namespace {

// Samples as integers of `bits`, or as they are.
template <int bits>
std::int32_t toInteger(float sample) {
    constexpr double kFull = static_cast<double>(std::int64_t{1} << (bits - 1));
    const double scaled = std::nearbyint(static_cast<double>(sample) * kFull);
    return static_cast<std::int32_t>(std::clamp(scaled, -kFull, kFull - 1));
}

template <int bits>
float fromInteger(std::int32_t value) {
    constexpr double kFull = static_cast<double>(std::int64_t{1} << (bits - 1));
    return static_cast<float>(value / kFull);
}

struct Float {
    static constexpr std::size_t kBytes = 4;
    static void put(float sample, std::byte* at) { std::memcpy(at, &sample, kBytes); }
    static float get(const std::byte* at) {
        float sample;
        std::memcpy(&sample, at, kBytes);
        return sample;
    }
};

template <typename Word>
struct Integer {
    static constexpr std::size_t kBytes = sizeof(Word);
    static constexpr int kBits = 8 * sizeof(Word);
    static void put(float sample, std::byte* at) {
        const auto word = static_cast<Word>(toInteger<kBits>(sample));
        std::memcpy(at, &word, kBytes);
    }
    static float get(const std::byte* at) {
        Word word;
        std::memcpy(&word, at, kBytes);
        return fromInteger<kBits>(word);
    }
};

struct Packed24 {  // three bytes, the lowest first
    static constexpr std::size_t kBytes = 3;
    static void put(float sample, std::byte* at) {
        const std::int32_t word = toInteger<24>(sample);
        for (int i = 0; i < 3; ++i)
            at[i] = static_cast<std::byte>(word >> (8 * i));
    }
    static float get(const std::byte* at) {
        const auto high = static_cast<std::int8_t>(at[2]);
        const int low = std::to_integer<int>(at[0]) | std::to_integer<int>(at[1]) << 8;
        return fromInteger<24>(high * 65536 + low);
    }
};

template <typename Sample>
void spread(std::span<const float> mono, std::size_t channels, std::byte* interleaved) {
    const std::size_t sounding = std::min<std::size_t>(channels, 2);
    for (const float sample : mono) {
        for (std::size_t channel = 0; channel < channels; ++channel) {
            Sample::put(channel < sounding ? sample : 0.f, interleaved);
            interleaved += Sample::kBytes;
        }
    }
}

template <typename Sample>
void pick(const std::byte* interleaved, std::size_t channels, std::span<float> mono) {
    for (float& sample : mono) {
        sample = Sample::get(interleaved);
        interleaved += channels * Sample::kBytes;
    }
}

template <typename Sample>
constexpr AlsaFormat row(snd_pcm_format_t format) {
    return {format, Sample::kBytes, spread<Sample>, pick<Sample>};
}

constexpr std::array kFormats{
    row<Float>(SND_PCM_FORMAT_FLOAT),
    row<Integer<std::int32_t>>(SND_PCM_FORMAT_S32),
    row<Packed24>(SND_PCM_FORMAT_S24_3LE),
    row<Integer<std::int16_t>>(SND_PCM_FORMAT_S16),
};

}  // namespace

std::span<const AlsaFormat> AlsaFormat::all() {
    return kFormats;
}
