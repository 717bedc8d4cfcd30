#include "GrainLoop.h"

#include <cmath>
#include <numbers>

#include "GrainNoteData.h"
#include "RandomSource.h"

namespace {

constexpr float kLargestGrain = 5000.f;  // clock units: frames at 440 Hz
constexpr float kSmallestGrain = 250.f;

float finiteOrZero(float value) {
    return std::isfinite(value) ? value : 0.f;
}

// Into [0, length] by whole lengths. One subtraction or addition at a time is what is wanted, bit
// for bit; below 2^24 every such step but the last addition is exact, so the remainder gives the
// same at once, and beyond it a sum that no longer moves cannot hang the voice.
float wrapped(float head, float length) {
    if (head >= 0.f && head < length)
        return head;
    if (head >= length)
        head -= length;
    if (head >= length || head <= -length)
        head = std::fmod(head, length) + 0.f;  // -0 becomes 0, as the last addition makes it
    if (head < 0.f)
        head += length;
    return finiteOrZero(head);
}

// A render's constants and the voice's moving parts, taken out of the note record and put back.
struct Voice {
    const float* samples;
    std::uint32_t count;
    float length;  // `count` as a float; above 2^24 it may be a little more
    float grain;   // grain length in clock units
    float ratio;   // pitch
    float speed;   // grain speed with its direction
    float head[2];
    float clock;
    float smoothedGain;
    std::uint32_t fading;

    float sampleAt(float head) const;
    void beginGrain(GrainNoteData& note);
    void placeHead(GrainNoteData& note);
};

float Voice::sampleAt(float position) const {
    auto index = static_cast<std::uint32_t>(position);
    const float fraction = position - static_cast<float>(index);
    if (index >= count)
        index -= count;  // rounding has put the head on the end itself, which is the start
    if (!(fraction > 0.f))
        return samples[index];
    const std::uint32_t next = index + 1 == count ? 0 : index + 1;
    return samples[index] * (1.f - fraction) + fraction * samples[next];
}

// -0.5 to 0.5
float centred(std::uint32_t random) {
    return static_cast<float>(random) * 4.656613e-10f - 0.5f;
}

void Voice::placeHead(GrainNoteData& note) {
    float& moved = head[fading];
    const float rising = head[1 - fading];
    switch (note.grainMode) {
        case kGrainStatic:
        case kGrainLinear:
            moved = rising - grain * (1.f - speed);
            break;
        case kGrainBounce:
            moved = rising - grain * (1.f - speed);
            if (moved < 0.f || moved + grain >= length) {
                note.reversed = !note.reversed;
                moved = rising - grain * (speed + 1.f);
                speed = -speed;
            }
            break;
        case kGrainChaos:
            moved = static_cast<float>(RandomSource::next() % count);
            break;
        case kGrainDrunken:
            moved = rising - grain * (1.f - speed);
            moved += grain * centred(RandomSource::next());
            break;
        case kGrainScrambly:
            moved = rising + speed * (length * centred(RandomSource::next())) * 0.25f;
            break;
        case kGrainSplitLinear:
            moved += ratio * (grain * (speed - 1.f) * static_cast<float>(fading + 1));
            break;
        default:
            break;
    }
}

void Voice::beginGrain(GrainNoteData& note) {
    placeHead(note);
    if (note.retrigger) {
        note.retrigger = false;
        note.reversed = false;
        head[fading] = 0.f;
    }
    fading = 1 - fading;
    clock -= grain;
}

float speedOf(const GrainNoteData& note) {
    float speed = note.grainSpeed;
    if (note.syncSpeed)
        speed *= 440.f / note.frequency;
    if (note.grainMode == kGrainStatic)
        speed = 0.f;
    return note.reversed ? -speed : speed;
}

Voice takeUp(const GrainNoteData& note, const GrainSound& sound) {
    Voice voice;
    const float size = note.grainSize;
    voice.samples = sound.samples;
    voice.count = sound.count;
    voice.length = static_cast<float>(sound.count);
    voice.grain = size * kLargestGrain + (1.f - size) * kSmallestGrain;
    voice.ratio = note.frequency / 440.f;
    voice.speed = speedOf(note);
    for (int i = 0; i < 2; ++i) {
        voice.head[i] = finiteOrZero(note.heads[i]);
        // Left by another sound; on the length itself a head may stand by rounding.
        if (voice.head[i] < 0.f || voice.head[i] > voice.length)
            voice.head[i] = wrapped(voice.head[i], voice.length);
    }
    voice.clock = finiteOrZero(note.heads[2]);
    voice.smoothedGain = note.smoothedGain;
    voice.fading = note.current & 1;
    return voice;
}

void putBack(const Voice& voice, GrainNoteData& note) {
    note.heads[0] = voice.head[0];
    note.heads[1] = voice.head[1];
    note.heads[2] = voice.clock;
    note.smoothedGain = voice.smoothedGain;
    note.current = voice.fading;
}

}  // namespace

void renderGrains(GrainNoteData& note, const GrainSound& sound, float* out,
                  std::uint32_t frames) noexcept {
    Voice voice = takeUp(note, sound);
    const float modulation = finiteOrZero(note.fmFrequency);
    const auto wobbleStep =
        static_cast<float>(double{modulation} * (2 * std::numbers::pi) * 1000 / 44100);
    const float preamp = note.preamp;
    const float gain = note.gain;
    for (std::uint32_t k = 0; k < frames; ++k) {
        const float fading = voice.sampleAt(voice.head[voice.fading]);
        const float rising = voice.sampleAt(voice.head[1 - voice.fading]);
        voice.clock += voice.ratio;
        float t = voice.clock / voice.grain;
        if (t > 1.f) {
            voice.beginGrain(note);
            t = 1.f;
        }
        const float cube = t * t * t;
        out[k] = (rising * cube + fading * (1.f - cube)) * preamp * voice.smoothedGain;
        voice.smoothedGain = voice.smoothedGain * 0.5f + gain * 0.5f;
        float step = voice.ratio;
        if (modulation > 0.f)
            step *= std::sin(wobbleStep * static_cast<float>(k)) * 0.25f + 1.f;
        for (float& head : voice.head)
            head = wrapped(head + step, voice.length);
    }
    putBack(voice, note);
}
