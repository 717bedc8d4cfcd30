#include "GrainLoop.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <numbers>

#include "GrainNoteData.h"
#include "RandomSource.h"
#include "SteadySum.h"
#include "WobbleTable.h"

namespace {

constexpr float kLargestGrain = 5000.f;  // clock units: frames at 440 Hz
constexpr float kSmallestGrain = 250.f;
constexpr float kWildModulation = 1e9f;  // kHz; from about here on the wobble is not a number
constexpr float kNever = std::numeric_limits<float>::infinity();

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

// Frames that are worked on at once: what a grain needs of them stays in the nearest cache.
constexpr std::uint32_t kBlock = 256;

// One head over a block of frames.
struct HeadBlock {
    float positions[kBlock];
    float values[kBlock];
    bool nearEnd;  // some position may be in the last sample or on the end itself
};

// A render's constants and the voice's moving parts, taken out of the note record and put back.
struct Voice {
    const float* samples;
    std::uint32_t count;
    float length;            // `count` as a float; above 2^24 it may be a little more
    float lastSample;        // from here on a position may need the first sample
    float grain;             // grain length in clock units
    float ratio;             // pitch
    SteadyStep steady{0.f};  // of the ratio
    float speed;             // grain speed with its direction
    float preamp;
    float gain;
    float wobbleStep;  // of the modulation's phase, radians a frame
    bool modulates;
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
    const float fmFrequency = note.fmFrequency;
    voice.samples = sound.samples;
    voice.count = sound.count;
    voice.length = static_cast<float>(sound.count);
    voice.lastSample = std::nextafter(voice.length, 0.f) - 1.f;
    voice.grain = size * kLargestGrain + (1.f - size) * kSmallestGrain;
    voice.ratio = note.frequency / 440.f;
    voice.steady = SteadyStep(voice.ratio);
    voice.speed = speedOf(note);
    voice.preamp = note.preamp;
    voice.gain = note.gain;
    voice.modulates = fmFrequency > 0.f && fmFrequency < kWildModulation;
    voice.wobbleStep =
        static_cast<float>(double{fmFrequency} * (2 * std::numbers::pi) * 1000 / 44100);
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

// The clock after each of the next frames, as long as the grain lasts. Returns how many, at most
// `most`. (A quotient rounds to more than 1 exactly when its dividend is the larger.)
std::uint32_t runClock(Voice& voice, float* clocks, std::uint32_t most) {
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

// Where a head is at each of the next frames; returns where it is after them.
float runHead(const Voice& voice, float position, HeadBlock& block, std::uint32_t frames) {
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
    return position;
}

// The same for both heads at once under frequency modulation, which has no closed form.
void runModulatedHeads(Voice& voice, const float* steps, HeadBlock* blocks, std::uint32_t frames) {
    float first = voice.head[0];
    float second = voice.head[1];
    // No step, rounded, is longer than this.
    const float longest = std::fabs(voice.ratio) * 1.2501f + voice.length * 1e-7f;
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

// Reads the sound at a block's positions. Each pair of neighbours is fetched as one; between the
// samples themselves is left to a loop that the compiler can do several frames at a time.
void readBlock(const Voice& voice, HeadBlock& block, std::uint32_t frames) {
    if (block.nearEnd) {
        for (std::uint32_t k = 0; k < frames; ++k)
            block.values[k] = voice.sampleAt(block.positions[k]);
        return;
    }
    std::int32_t indexes[kBlock];
    float pairs[2 * kBlock];
    for (std::uint32_t k = 0; k < frames; ++k)
        indexes[k] = static_cast<std::int32_t>(block.positions[k]);
    for (std::uint32_t k = 0; k < frames; ++k)
        std::memcpy(pairs + 2 * k, voice.samples + indexes[k], 2 * sizeof(float));
    for (std::uint32_t k = 0; k < frames; ++k) {
        const float fraction = block.positions[k] - static_cast<float>(indexes[k]);
        const float between = pairs[2 * k] * (1.f - fraction) + fraction * pairs[2 * k + 1];
        block.values[k] = fraction > 0.f ? between : pairs[2 * k];
    }
}

// The note gain of each frame. It halves its distance to the one wanted until that no longer
// changes it.
void runGain(Voice& voice, float* gains, std::uint32_t frames) {
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

// Frames in the middle of a grain, at most a block; returns how many before the grain ends.
std::uint32_t renderBlock(Voice& voice, const float* steps, float* out, std::uint32_t frames) {
    float clocks[kBlock];
    float gains[kBlock];
    HeadBlock heads[2];
    const std::uint32_t n = runClock(voice, clocks, frames);
    if (steps)
        runModulatedHeads(voice, steps, heads, n);
    else
        for (int i = 0; i < 2; ++i)
            voice.head[i] = runHead(voice, voice.head[i], heads[i], n);
    for (HeadBlock& head : heads)
        readBlock(voice, head, n);
    runGain(voice, gains, n);
    const float* fading = heads[voice.fading].values;
    const float* rising = heads[1 - voice.fading].values;
    for (std::uint32_t k = 0; k < n; ++k) {
        const float t = clocks[k] / voice.grain;
        const float cube = t * t * t;
        out[k] = (rising[k] * cube + fading[k] * (1.f - cube)) * voice.preamp * gains[k];
    }
    return n;
}

// The frame in which one grain ends and the next begins: the rising head alone is heard.
float renderGrainEnd(Voice& voice, GrainNoteData& note, float step) {
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

// How far the heads move in each of `count` frames from `frame` of the render on.
void fillSteps(const Voice& voice, std::uint32_t frame, float* steps, std::uint32_t count) {
    if (frame + count <= WobbleTable::kFrames) {
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
    Voice voice = takeUp(note, sound);
    float steps[kBlock];
    for (std::uint32_t k = 0; k < frames;) {
        const std::uint32_t most = std::min(frames - k, kBlock);
        if (voice.modulates)
            fillSteps(voice, k, steps, most);
        const std::uint32_t n =
            renderBlock(voice, voice.modulates ? steps : nullptr, out + k, most);
        k += n;
        if (n == most)
            continue;
        out[k] = renderGrainEnd(voice, note, voice.modulates ? steps[n] : voice.ratio);
        ++k;
    }
    putBack(voice, note);
}
