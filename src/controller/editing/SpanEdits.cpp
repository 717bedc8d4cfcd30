#include "editing/SpanEdits.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <numbers>
#include <span>

#include "VornWave2.h"

namespace {

constexpr float kCopied = 0.5f;  // of the progress

/// Samples in the making: `frames` frames of `channels` interleaved floats.
struct Frames {
    float* data;
    std::uint32_t frames;
    std::uint32_t channels;
};

/// Calls `work` for frames [from, to), part by part. False when it was given up.
bool inParts(std::uint32_t frames, EditWatch& watch, float begin, float end,
             const std::function<void(std::uint32_t from, std::uint32_t to)>& work) {
    for (std::uint32_t at = 0; at < frames && !watch.unwanted;) {
        const std::uint32_t part = std::min(SoundCopy::kPart, frames - at);
        work(at, at + part);
        at += part;
        watch.progress =
            begin + (end - begin) * static_cast<float>(at) / static_cast<float>(frames);
    }
    return !watch.unwanted;
}

bool fade(const Frames& sound, bool out, EditWatch& watch) {
    const auto n = static_cast<double>(sound.frames);
    return inParts(sound.frames, watch, kCopied, 1.f, [&](std::uint32_t from, std::uint32_t to) {
        for (std::uint32_t i = from; i < to; ++i) {
            const float gain = SpanEdits::fadeGain((out ? sound.frames - 1 - i : i) / n);
            for (std::uint32_t c = 0; c < sound.channels; ++c)
                sound.data[std::size_t{i} * sound.channels + c] *= gain;
        }
    });
}

/// Infinite samples are as loud as the loudest, and do not decide which that is.
float scaled(float sample, float peak) {
    return std::isnan(sample) ? 0.f : std::clamp(sample / peak, -1.f, 1.f);
}

bool normalise(const Frames& sound, EditWatch& watch) {
    const auto part = [&](std::uint32_t from, std::uint32_t to) {
        return std::span(sound.data + std::size_t{from} * sound.channels,
                         std::size_t{to - from} * sound.channels);
    };
    float peak = 0.f;
    const auto look = [&](std::uint32_t from, std::uint32_t to) {
        for (const float sample : part(from, to)) {
            if (std::isfinite(sample))
                peak = std::max(peak, std::abs(sample));
        }
    };
    if (!inParts(sound.frames, watch, kCopied, 0.75f, look))
        return false;
    if (peak == 0)
        peak = 1.f;
    return inParts(sound.frames, watch, 0.75f, 1.f, [&](std::uint32_t from, std::uint32_t to) {
        for (float& sample : part(from, to))
            sample = scaled(sample, peak);
    });
}

bool reverse(const Frames& sound, EditWatch& watch) {
    const std::uint32_t k = sound.channels;
    return inParts(
        sound.frames / 2, watch, kCopied, 1.f, [&](std::uint32_t from, std::uint32_t to) {
            for (std::uint32_t i = from; i < to; ++i) {
                float* one = sound.data + std::size_t{i} * k;
                std::swap_ranges(one, one + k, sound.data + std::size_t{sound.frames - 1 - i} * k);
            }
        });
}

bool work(const Frames& sound, SpanEdits::Kind kind, EditWatch& watch) {
    using enum SpanEdits::Kind;
    switch (kind) {
        case fadeIn:
            return fade(sound, false, watch);
        case fadeOut:
            return fade(sound, true, watch);
        case normalise:
            return ::normalise(sound, watch);
        case reverse:
            return ::reverse(sound, watch);
    }
    return false;
}

}  // namespace

float SpanEdits::fadeGain(double place) {
    return static_cast<float>(0.5 - 0.5 * std::cos(std::numbers::pi * place));
}

SoundCopy::Copy SpanEdits::edited(const VornWaveSequence& sound, const EditSpan& span, Kind kind,
                                  std::uint32_t channels, EditWatch& watch) {
    auto samples = SoundCopy::samplesOf(sound, span, channels, watch, kCopied);
    if (!samples.memory)
        return {nullptr, samples.error};
    if (!work({samples.memory.data(), span.frames(), channels}, kind, watch))
        return {nullptr, ""};
    return SoundCopy::waveOf(std::move(samples.memory), channels);
}
