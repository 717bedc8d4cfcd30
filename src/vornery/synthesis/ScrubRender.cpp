#include "ScrubRender.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "ScaledWindow.h"
#include "WideForms.h"

namespace {

constexpr std::uint32_t kBlock = 256;  // frames
constexpr std::uint32_t kSingly = 16;  // levels one by one before several are tried
constexpr float kFullScale = 32767.f;

using Head = VornSequenceScrubberPlayHead;

/// The fade levels of some samples.
struct Fade {
    std::uint32_t samples;  // how many
    bool turned;            // the level came to 0 or 1 after the last of them
};

void writeLevels(float level, float advance, std::uint32_t count, float* levels) {
    for (std::int32_t j = 0; j < static_cast<std::int32_t>(count); ++j)
        levels[j] = level + static_cast<float>(j) * advance;
}

// How many levels from `level` on are level + j * advance, without any rounding: between two powers
// of two all sums are multiples of one unit, so every step is rounded alike. (Two steps are looked
// at, because one that ends in half a unit is rounded by what it is added to.) 0 for too few.
std::uint32_t steadyLevels(float level, float step, std::uint32_t most, float& advance) {
    constexpr std::uint32_t kFewest = 8;
    const std::uint32_t exponent = std::bit_cast<std::uint32_t>(level) & 0x7f800000;
    const float low = std::bit_cast<float>(exponent);
    const float second = level + step;
    const float third = second + step;
    advance = second - level;
    if (most < kFewest || third - second != advance || !(third >= low && third < 2 * low))
        return 0;
    const float room = step > 0.f ? 2 * low - level : low - level;
    const float steps = room / advance;  // so few that its rounding does not matter, or very many
    if (!(steps < 1e5f))
        return most;
    const auto safe = static_cast<std::uint32_t>(steps);
    return safe > kFewest ? std::min(safe - 1, most) : 0;
}

Fade fade(Head& head, float* levels, std::uint32_t most) {
    const float step = head.fadeStep;
    float level = head.fadeLevel;
    std::uint32_t samples = 0;
    bool turned = false;
    while (samples < most && !turned) {
        float advance = 0.f;
        const std::uint32_t steady = steadyLevels(level, step, most - samples, advance);
        if (steady > 0) {
            writeLevels(level, advance, steady, levels + samples);
            samples += steady - 1;
            level = levels[samples];
        }
        const std::uint32_t end = std::min(samples + kSingly, most);
        while (samples < end && !turned) {
            levels[samples++] = level;
            level += step;
            turned = step > 0.f ? level >= 1.f : step < 0.f && level <= 0.f;
        }
    }
    head.fadeLevel = level;
    return {samples, turned};
}

// 0 when the head is not active, or has come to the end and stopped.
std::uint32_t framesLeft(Head& head) {
    if (!head.active)
        return 0;
    if (head.window->data && head.offset >= head.window->frameCount)
        head.moveTo({windowWithFrames(head.window + 1), 0});
    if (!head.window->data) {
        head.active = false;
        return 0;
    }
    return head.window->frameCount - head.offset;
}

template <int kStride>
inline void writeSame(const float* __restrict in, const float* __restrict levels, float gain,
                      std::int32_t frames, std::int16_t* __restrict out) {
    for (std::int32_t i = 0; i < frames; ++i) {
        const float steps = in[kStride * i] * levels[i] * gain * kFullScale;
        putPair(steps, steps, out + 2 * i);
    }
}

inline void writeInOrder(const float* __restrict in, const float* __restrict levels, float gain,
                         std::int32_t samples, std::int16_t* __restrict out) {
    for (std::int32_t i = 0; i < samples; ++i)
        out[i] = saturatedSample(in[i] * levels[i] * gain * kFullScale);
}

template <int kStride>
inline void scale(const float* __restrict in, const float* __restrict levels, std::int32_t frames,
                  float* __restrict out) {
    for (std::int32_t i = 0; i < frames; ++i)
        out[i] = levels[i] * in[kStride * i];
}

OMBRIX_WIDE_FORMS
void writeFaded(const WindowPlace& from, const float* levels, float gain, std::uint32_t count,
                std::int16_t* out) {
    const float* const in = samplesAt(from);
    const auto frames = static_cast<std::int32_t>(count);
    if (isStereo(*from.window))
        writeInOrder(in, levels, gain, 2 * frames, out);
    else if (strideOf(*from.window) == 2)
        writeSame<2>(in, levels, gain, frames, out);
    else
        writeSame<1>(in, levels, gain, frames, out);
}

struct FadedBlock {
    float left[kBlock];
    float right[kBlock];
};

OMBRIX_WIDE_FORMS
void readFaded(const WindowPlace& from, const float* levels, std::uint32_t count,
               FadedBlock& block) {
    const float* const in = samplesAt(from);
    const auto frames = static_cast<std::int32_t>(count);
    if (strideOf(*from.window) == 1)
        scale<1>(in, levels, frames, block.left);
    else
        scale<2>(in, levels, frames, block.left);
    if (isStereo(*from.window))
        scale<2>(in + 1, levels, frames, block.right);
    else
        std::memcpy(block.right, block.left, count * sizeof(float));
}

OMBRIX_WIDE_FORMS
void writeSum(const FadedBlock& a, const FadedBlock& b, float gain, std::uint32_t count,
              std::int16_t* __restrict out) {
    const auto frames = static_cast<std::int32_t>(count);
    for (std::int32_t i = 0; i < frames; ++i) {
        putPair(gain * (a.left[i] + b.left[i]) * kFullScale,
                gain * (a.right[i] + b.right[i]) * kFullScale, out + 2 * i);
    }
}

}  // namespace

void ScrubRender::forgetAll() {
    m_data.list = nullptr;
    m_data.heads[0].active = m_data.heads[1].active = m_data.next.active = false;
}

void ScrubRender::take(bool mayKeep) noexcept {
    if (!mayKeep)
        forgetAll();
    VornSequenceScrubberUpdate update;
    if (!m_data.pending.read(update))
        return;
    if (!update.list || update.list != m_data.list)
        forgetAll();
    m_data.list = update.list;
    if (!update.list)
        return;
    m_data.next.moveTo({update.window, update.offset});
    m_data.next.active = true;
}

void ScrubRender::begin(Head& head, float step) {
    head.moveTo(m_data.next.place());
    head.fadeLevel = 0.f;
    head.fadeStep = step;
    head.active = true;
    m_data.next.active = false;
}

// A head has come to its loudest or has faded.
void ScrubRender::turn(Head& head, Head& other) {
    const float step = head.fadeStep;
    if (step > 0.f) {
        head.fadeLevel = 1.f;
        head.fadeStep = -step;
        if (m_data.next.active && !other.active)
            begin(other, step);
    } else if (m_data.next.active) {
        begin(head, -step);
    } else {
        head.fadeLevel = head.fadeStep = 0.f;
        head.active = false;
    }
}

std::uint32_t ScrubRender::write(std::int16_t* out, std::uint32_t frames) noexcept {
    Head& a = m_data.heads[0];
    Head& b = m_data.heads[1];
    if (m_data.list && m_data.next.active && !a.active && !b.active)
        begin(a, m_data.fadeRate / 44100.f);
    std::uint32_t done = 0;
    while (m_data.list && done < frames) {
        const std::uint32_t leftA = framesLeft(a);
        const std::uint32_t leftB = framesLeft(b);
        const std::uint32_t wanted = std::min(frames - done, kBlock);
        std::int16_t* const to = out + 2 * std::size_t{done};
        if (leftA && leftB)
            done += writeBoth(std::min({leftA, leftB, wanted}), to);
        else if (leftA)
            done += writeOne(a, b, std::min(leftA, wanted), to);
        else if (leftB)
            done += writeOne(b, a, std::min(leftB, wanted), to);
        else
            break;
    }
    std::fill(out + 2 * std::size_t{done}, out + 2 * std::size_t{frames}, std::int16_t{0});
    return done;
}

std::uint32_t ScrubRender::writeOne(Head& head, Head& other, std::uint32_t frames,
                                    std::int16_t* out) {
    const WindowPlace from = head.place();
    const std::uint32_t samplesPerFrame = isStereo(*from.window) ? 2 : 1;
    float levels[2 * kBlock];
    const Fade run = fade(head, levels, frames * samplesPerFrame);
    frames = (run.samples + samplesPerFrame - 1) / samplesPerFrame;
    head.offset += frames;
    if (run.turned)
        turn(head, other);
    // The level of a stereo sound moves on with each sample, so it may turn within a frame.
    if (run.samples < frames * samplesPerFrame && fade(head, levels + run.samples, 1).turned)
        turn(head, other);
    writeFaded(from, levels, m_gain, frames, out);
    return frames;
}

std::uint32_t ScrubRender::writeBoth(std::uint32_t frames, std::int16_t* out) {
    Head& a = m_data.heads[0];
    Head& b = m_data.heads[1];
    const WindowPlace fromA = a.place();
    const WindowPlace fromB = b.place();
    float levelsA[kBlock] = {};
    float levelsB[kBlock];
    Fade runA = fade(a, levelsA, frames);
    const Fade runB = fade(b, levelsB, runA.samples);
    if (runB.samples < runA.samples) {
        a.fadeLevel = levelsA[runB.samples];
        runA.turned = false;
    }
    FadedBlock blockA;
    FadedBlock blockB;
    readFaded(fromA, levelsA, runB.samples, blockA);
    readFaded(fromB, levelsB, runB.samples, blockB);
    writeSum(blockA, blockB, m_gain, runB.samples, out);
    a.offset += runB.samples;
    b.offset += runB.samples;
    if (runA.turned)
        turn(a, b);
    if (runB.turned)
        turn(b, a);
    return runB.samples;
}
