#include <array>
#include <cmath>
#include <numbers>

#include "Harmonics.h"
#include "Loop.h"
#include "Waves.h"

namespace {

constexpr double kSeconds = 8;
constexpr int kSingers = 7;
constexpr std::size_t kHarmonics = 24;
constexpr std::size_t kControlFrames = 64;  // the mouth does not move faster

struct Vowel {
    double formants[3];  // hertz
};
// Women's means of Peterson and Barney: "ah", "aw", "oo", "aw", "ah", "er" around the loop.
constexpr std::array kVowels{
    Vowel{{850, 1220, 2810}}, Vowel{{590, 920, 2710}},  Vowel{{370, 950, 2670}},
    Vowel{{590, 920, 2710}},  Vowel{{850, 1220, 2810}}, Vowel{{500, 1640, 1960}},
};
constexpr double kLevels[] = {1, 0.5, 0.16};
constexpr double kBandwidths[] = {110, 130, 190};  // hertz, of many mouths at once

double mouth(double hertz, double position) {
    const double place = position * double(kVowels.size());
    const auto index = std::size_t(place);
    const double part = 0.5 - 0.5 * std::cos(std::numbers::pi * (place - double(index)));
    const Vowel& from = kVowels[index % kVowels.size()];
    const Vowel& to = kVowels[(index + 1) % kVowels.size()];
    double sum = 0.02;
    for (int i = 0; i < 3; ++i) {
        const double centre = from.formants[i] + part * (to.formants[i] - from.formants[i]);
        sum += kLevels[i] / std::hypot(1, (hertz - centre) / (kBandwidths[i] / 2));
    }
    return sum;
}

void addSinger(Sound& sound, Random& random) {
    const Wander pitch(random), level(random);
    const double vibrato = fitting(random.between(4.8, 6.2), kSeconds) * kSeconds;
    const double late = random.between(-0.02, 0.02);  // nobody changes the vowel together
    double phase = random.between(0, 2 * std::numbers::pi);
    std::array<double, kHarmonics> amplitudes{};
    for (std::size_t i = 0; i < sound.size(); ++i) {
        const double position = double(i) / double(sound.size());
        const double shake = 0.006 * std::sin(2 * std::numbers::pi * (vibrato * position + late));
        const double hertz = kPitch * (1 + 0.004 * pitch.at(position) + shake);
        if (i % kControlFrames == 0) {
            const double vowel = std::fmod(position + late + 1, 1.);
            for (std::size_t k = 0; k < kHarmonics; ++k) {
                const double harmonic = double(k + 1);
                amplitudes[k] = mouth(harmonic * hertz, vowel) / harmonic;
            }
        }
        phase += 2 * std::numbers::pi * hertz / kFramesPerSecond;
        sound[i] += (1 + 0.4 * level.at(position)) * harmonics(amplitudes, phase);
    }
}

}  // namespace

/// Seven voices that pass from "ah" through "aw" and "oo" to "er": a glottal tone of 6 dB an octave
/// through formants. Gordon E. Peterson and Harold L. Barney, "Control methods used in a study of
/// the vowels", 1952; the formants side by side as in Dennis H. Klatt, "Software for a
/// cascade/parallel formant synthesizer", 1980.
Sound choirVowel() {
    Random random(1952);
    Sound sound(framesIn(kSeconds));
    for (int singer = 0; singer < kSingers; ++singer)
        addSinger(sound, random);
    return sound;
}
