#include "GrainVoice.h"

#include <numbers>

#include "GrainNoteData.h"
#include "RandomSource.h"

namespace {

constexpr float kLargestGrain = 5000.f;  // clock units: frames at 440 Hz
constexpr float kSmallestGrain = 250.f;
constexpr float kWildModulation = 1e9f;  // kHz; from about here on the wobble is not a number

// -0.5 to 0.5
float centred(std::uint32_t random) {
    return static_cast<float>(random) * 4.656613e-10f - 0.5f;
}

float speedOf(const GrainNoteData& note, float frequency) {
    float speed = note.grainSpeed;
    if (note.syncSpeed)
        speed *= 440.f / frequency;
    if (note.grainMode == kGrainStatic)
        speed = 0.f;
    return note.reversed ? -speed : speed;
}

float grainLength(float size) {
    return size * kLargestGrain + (1.f - size) * kSmallestGrain;
}

// Heads may have been left beyond the end by another sound. On the end itself one stands by
// rounding, and stays.
float takenUp(float head, float length) {
    head = finiteOrZero(head);
    return head < 0.f || head > length ? wrapped(head, length) : head;
}

}  // namespace

GrainVoice::GrainVoice(const GrainNoteData& note, const GrainSound& sound) noexcept
    : samples(sound.samples),
      count(sound.count),
      length(static_cast<float>(sound.count)),
      lastSample(std::nextafter(length, 0.f) - 1.f),
      grain(grainLength(note.grainSize)),
      frequency(note.frequency),
      ratio(frequency / 440.f),
      steady(ratio),
      speed(speedOf(note, frequency)),
      preamp(note.preamp),
      gain(note.gain),
      head{takenUp(note.heads[0], length), takenUp(note.heads[1], length)},
      clock(finiteOrZero(note.heads[2])),
      smoothedGain(note.smoothedGain),
      fading(note.current & 1) {
    const float kilohertz = note.fmFrequency;
    wobbleStep = static_cast<float>(double{kilohertz} * (2 * std::numbers::pi) * 1000 / 44100);
    modulates = kilohertz > 0.f && kilohertz < kWildModulation;
}

void GrainVoice::putBack(GrainNoteData& note) const noexcept {
    note.heads[0] = head[0];
    note.heads[1] = head[1];
    note.heads[2] = clock;
    note.smoothedGain = smoothedGain;
    note.current = fading;
}

void GrainVoice::placeHead(GrainNoteData& note) noexcept {
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

void GrainVoice::beginGrain(GrainNoteData& note) noexcept {
    placeHead(note);
    if (note.retrigger) {
        note.retrigger = false;
        note.reversed = false;
        head[fading] = 0.f;
    }
    fading = 1 - fading;
    clock -= grain;
}
