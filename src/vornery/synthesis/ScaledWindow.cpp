#include "ScaledWindow.h"

#include <algorithm>
#include <bit>

#include "WideForms.h"

namespace {

constexpr std::int32_t kInfinity = 0x7f800000;  // bits

constexpr float kFullScale = 32767.f;

inline void put(float value, float* out) {
    *out = value;
}
inline void put(float value, std::int16_t* out) {
    *out = saturatedSample(value * kFullScale);
}
inline void putFrame(float left, float right, float* out) {
    out[0] = left;
    out[1] = right;
}
inline void putFrame(float left, float right, std::int16_t* out) {
    putPair(left * kFullScale, right * kFullScale, out);
}

/// The greatest of some values from 0 up. As integers, floats above 0 are in order and all others
/// are below 0; only not-a-number is out of order.
struct Greatest {
    std::int32_t bits = 0;
    void take(float value) {
        const auto candidate = std::bit_cast<std::int32_t>(value);
        bits = candidate > bits ? candidate : bits;
    }
    bool isNumber() const { return bits <= kInfinity; }
    float value() const { return std::bit_cast<float>(bits); }
};

float greatestNumber(const float* samples, std::int32_t count, std::size_t stride, float gain) {
    float greatest = 0.f;
    for (std::int32_t i = 0; i < count; ++i) {
        const float value = gain * samples[static_cast<std::size_t>(i) * stride];
        greatest = value > greatest ? value : greatest;
    }
    return greatest;
}

template <int kStride, int kChannels, typename Sample>
inline float writeSame(const float* __restrict in, std::int32_t count, float gain,
                       Sample* __restrict out) {
    Greatest greatest;
    for (std::int32_t i = 0; i < count; ++i) {
        const float value = gain * in[kStride * i];
        greatest.take(value);
        if constexpr (kChannels == 2)
            putFrame(value, value, out + 2 * i);
        else
            put(value, out + i);
    }
    return greatest.isNumber() ? greatest.value() : greatestNumber(in, count, kStride, gain);
}

template <typename Sample>
inline StereoPeaks writePairs(const float* __restrict in, std::int32_t count, float gain,
                              Sample* __restrict out) {
    Greatest left, right;
    for (std::int32_t i = 0; i < count; ++i) {
        left.take(gain * in[2 * i]);
        right.take(gain * in[2 * i + 1]);
        putFrame(gain * in[2 * i], gain * in[2 * i + 1], out + 2 * i);
    }
    return {left.isNumber() ? left.value() : greatestNumber(in, count, 2, gain),
            right.isNumber() ? right.value() : greatestNumber(in + 1, count, 2, gain)};
}

template <typename Sample>
inline StereoPeaks write(const WindowPlace& from, std::int32_t frames, float gain, Sample* out,
                         std::uint32_t channels) {
    const float* const in = samplesAt(from);
    const bool stereo = isStereo(*from.window);
    const bool dense = stereo || strideOf(*from.window) == 1;
    if (channels == 2 && stereo)
        return writePairs(in, frames, gain, out);
    if (channels == 2)
        return {dense ? writeSame<1, 2>(in, frames, gain, out)
                      : writeSame<2, 2>(in, frames, gain, out)};
    return {dense ? writeSame<1, 1>(in, frames, gain, out)
                  : writeSame<2, 1>(in, frames, gain, out)};
}

void raise(StereoPeaks& peaks, const StereoPeaks& by) {
    peaks.left = std::max(peaks.left, by.left);
    peaks.right = std::max(peaks.right, by.right);
}

}  // namespace

OMBRIX_WIDE_FORMS
void writeScaled(const WindowPlace& from, std::uint32_t frames, float gain, float* out,
                 std::uint32_t channels, StereoPeaks& peaks) noexcept {
    raise(peaks, write(from, static_cast<std::int32_t>(frames), gain, out, channels));
}

OMBRIX_WIDE_FORMS
void writeScaled(const WindowPlace& from, std::uint32_t frames, float gain, std::int16_t* out,
                 std::uint32_t channels, StereoPeaks& peaks) noexcept {
    raise(peaks, write(from, static_cast<std::int32_t>(frames), gain, out, channels));
}
