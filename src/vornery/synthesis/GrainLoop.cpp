#include "GrainLoop.h"

#include <algorithm>

#include "GrainBlock.h"
#include "WideForms.h"
#include "WobbleTable.h"

namespace {

// From the fading to the rising head along a cubic, as the grain goes by.
OMBRIX_WIDE_FORMS
void crossFade(const float* __restrict rising, const float* __restrict fading,
               const float* __restrict clocks, const float* __restrict gains, float grain,
               float preamp, float* __restrict out, std::uint32_t frames) {
    for (std::uint32_t k = 0; k < frames; ++k) {
        const float t = clocks[k] / grain;
        const float cube = t * t * t;
        out[k] = (rising[k] * cube + fading[k] * (1.f - cube)) * preamp * gains[k];
    }
}

// Frames in the middle of a grain, at most a block; returns how many before the grain ends.
std::uint32_t renderBlock(GrainVoice& voice, const float* steps, float* out, std::uint32_t frames) {
    float clocks[kGrainBlock];
    float gains[kGrainBlock];
    HeadBlock heads[2];
    const std::uint32_t n = runClock(voice, clocks, frames);
    if (steps)
        runHeadsByStep(voice, steps, heads, n);
    else
        for (int i = 0; i < 2; ++i)
            runHead(voice, voice.head[i], heads[i], n);
    for (HeadBlock& head : heads)
        readBlock(voice, head, n);
    runGain(voice, gains, n);
    const float* fading = heads[voice.fading].values;
    const float* rising = heads[1 - voice.fading].values;
    crossFade(rising, fading, clocks, gains, voice.grain, voice.preamp, out, n);
    return n;
}

// The frame in which one grain ends and the next begins: the rising head alone is heard.
float renderGrainEnd(GrainVoice& voice, GrainNoteData& note, float step) {
    const float fading = voice.sampleAt(voice.head[voice.fading]);
    const float rising = voice.sampleAt(voice.head[1 - voice.fading]);
    voice.clock += voice.ratio;
    voice.beginGrain(note);
    const float sample = (rising * 1.f + fading * 0.f) * voice.preamp * voice.smoothedGain;
    voice.smoothedGain = voice.smoothedGain * 0.5f + voice.gain * 0.5f;
    for (float& head : voice.head)
        head = wrapped(head + step, voice.length);
    return sample;
}

// Frames for a turn of the sound below which stretches between two powers of two are too short to
// be worth finding.
constexpr float kShortTurn = 256.f;

bool movesByStep(const GrainVoice& voice) {
    return voice.modulates || voice.length < voice.ratio * kShortTurn;
}

// How far the heads move in each of `count` frames from `frame` of the render on.
void fillSteps(const GrainVoice& voice, std::uint32_t frame, float* steps, std::uint32_t count) {
    if (!voice.modulates) {
        std::fill_n(steps, count, voice.ratio);
    } else if (frame + count <= WobbleTable::kFrames) {
        const float* wobble = WobbleTable::values(voice.wobbleStep, frame + count) + frame;
        for (std::uint32_t k = 0; k < count; ++k)
            steps[k] = voice.ratio * wobble[k];
    } else {
        for (std::uint32_t k = 0; k < count; ++k)
            steps[k] = voice.ratio * WobbleTable::value(voice.wobbleStep, frame + k);
    }
}

}  // namespace

void renderGrains(GrainNoteData& note, const GrainSound& sound, float* out,
                  std::uint32_t frames) noexcept {
    GrainVoice voice(note, sound);
    float steps[kGrainBlock];
    const bool byStep = movesByStep(voice);
    for (std::uint32_t k = 0; k < frames;) {
        const std::uint32_t most = std::min(frames - k, kGrainBlock);
        if (byStep)
            fillSteps(voice, k, steps, most);
        const std::uint32_t n = renderBlock(voice, byStep ? steps : nullptr, out + k, most);
        k += n;
        if (n == most)
            continue;
        out[k] = renderGrainEnd(voice, note, byStep ? steps[n] : voice.ratio);
        ++k;
    }
    voice.putBack(note);
}
