#include "GrainBlock.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>

#include "WideForms.h"

namespace {
constexpr float kNever = std::numeric_limits<float>::infinity();
}

// A quotient rounds to more than 1 exactly when its dividend is the larger, so that the grain lasts
// while the clock is not beyond its length.
std::uint32_t runClock(GrainVoice& voice, float* clocks, std::uint32_t most) noexcept {
    const float step = voice.ratio;
    const float over = std::nextafter(voice.grain, kNever);
    float clock = voice.clock + step;
    std::uint32_t k = 0;
    while (k < most && clock / voice.grain <= 1.f) {
        const SteadySum steady = voice.steady.from(clock, over, most - k);
        steady.write(clock, clocks + k);
        k += steady.count;
        if (steady.count == 0)
            clocks[k++] = clock;
        voice.clock = clocks[k - 1];
        clock = voice.clock + step;
    }
    return k;
}

void runHead(const GrainVoice& voice, float& head, HeadBlock& block,
             std::uint32_t frames) noexcept {
    float position = head;
    float* positions = block.positions;
    bool nearEnd = false;
    for (std::uint32_t k = 0; k < frames;) {
        const SteadySum steady = voice.steady.from(position, voice.length, frames - k);
        steady.write(position, positions + k);
        k += steady.count;
        if (steady.count == 0)
            positions[k++] = position;
        nearEnd |= positions[k - 1] >= voice.lastSample;
        position = wrapped(positions[k - 1] + voice.ratio, voice.length);
    }
    block.nearEnd = nearEnd;
    head = position;
}

// The sums are made one by one, without looking for the end where it is far.
void runHeadsByStep(GrainVoice& voice, const float* steps, HeadBlock* blocks,
                    std::uint32_t frames) noexcept {
    float first = voice.head[0];
    float second = voice.head[1];
    // No step, rounded, is longer than this.
    const float longest =
        voice.ratio * (voice.modulates ? 1.2501f : 1.0001f) + voice.length * 1e-7f;
    bool nearEnd[2] = {false, false};
    for (std::uint32_t k = 0; k < frames;) {
        const float room = voice.lastSample - std::fmax(first, second);
        const float sure = voice.ratio > 0.f ? room / longest - 1.f : 0.f;
        const std::uint32_t run = sure >= static_cast<float>(frames - k) ? frames - k
                                  : sure >= 1.f ? static_cast<std::uint32_t>(sure)
                                                : 0;
        for (std::uint32_t j = k; j < k + run; ++j) {
            blocks[0].positions[j] = first;
            blocks[1].positions[j] = second;
            first += steps[j];
            second += steps[j];
        }
        k += run;
        if (k == frames)
            break;
        blocks[0].positions[k] = first;
        blocks[1].positions[k] = second;
        nearEnd[0] |= first >= voice.lastSample;
        nearEnd[1] |= second >= voice.lastSample;
        first = wrapped(first + steps[k], voice.length);
        second = wrapped(second + steps[k], voice.length);
        ++k;
    }
    voice.head[0] = first;
    voice.head[1] = second;
    blocks[0].nearEnd = nearEnd[0];
    blocks[1].nearEnd = nearEnd[1];
}

namespace {

// Fetches each sample and the one behind it as one.
void fetchPairs(const float* samples, const std::int32_t* indexes, float* pairs,
                std::uint32_t frames) {
    for (std::uint32_t k = 0; k < frames; ++k)
        std::memcpy(pairs + 2 * k, samples + indexes[k], 2 * sizeof(float));
}

// The same where the one behind may be the first.
void fetchPairsRound(const GrainVoice& voice, const std::int32_t* indexes, float* pairs,
                     std::uint32_t frames) {
    const auto count = static_cast<std::int32_t>(voice.count);
    std::int32_t first[kGrainBlock];
    std::int32_t second[kGrainBlock];
    for (std::uint32_t k = 0; k < frames; ++k) {
        first[k] = indexes[k] - (indexes[k] >= count ? count : 0);
        second[k] = first[k] + 1 == count ? 0 : first[k] + 1;
    }
    for (std::uint32_t k = 0; k < frames; ++k) {
        pairs[2 * k] = voice.samples[first[k]];
        pairs[2 * k + 1] = voice.samples[second[k]];
    }
}

// Between two samples; on one of them, that one.
OMBRIX_WIDE_FORMS
void interpolate(const float* __restrict positions, const std::int32_t* __restrict indexes,
                 const float* __restrict pairs, float* __restrict values, std::uint32_t frames) {
    const auto count = static_cast<std::int32_t>(frames);
    for (std::int32_t k = 0; k < count; ++k) {
        const float fraction = positions[k] - static_cast<float>(indexes[k]);
        const float between = pairs[2 * k] * (1.f - fraction) + fraction * pairs[2 * k + 1];
        values[k] = fraction > 0.f ? between : pairs[2 * k];
    }
}

}  // namespace

void readBlock(const GrainVoice& voice, HeadBlock& block, std::uint32_t frames) noexcept {
    std::int32_t indexes[kGrainBlock];
    float pairs[2 * kGrainBlock];
    for (std::uint32_t k = 0; k < frames; ++k)
        indexes[k] = static_cast<std::int32_t>(block.positions[k]);
    if (block.nearEnd)
        fetchPairsRound(voice, indexes, pairs, frames);
    else
        fetchPairs(voice.samples, indexes, pairs, frames);
    interpolate(block.positions, indexes, pairs, block.values, frames);
}

// The gain halves its distance to the one wanted until that no longer changes it.
void runGain(GrainVoice& voice, float* gains, std::uint32_t frames) noexcept {
    std::uint32_t k = 0;
    float gain = voice.smoothedGain;
    float next = gain * 0.5f + voice.gain * 0.5f;
    for (; k < frames && next != gain; ++k) {
        gains[k] = gain;
        gain = next;
        next = gain * 0.5f + voice.gain * 0.5f;
    }
    std::fill(gains + k, gains + frames, gain);
    voice.smoothedGain = gain;
}
