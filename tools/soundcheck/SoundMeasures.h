#pragma once

#include <cstddef>
#include <span>

/// What can be told of a mono sound at 44100 Hz without ears.
struct SoundMeasures {
    double seconds = 0;
    double peak = 0;           // full scale is 1
    double loudness = 0;       // LUFS, integrated; -70 or less is silence
    double centroidHertz = 0;  // middle of the magnitude spectrum, loud stretches counting more
    double gapSeconds = 0;     // longest stretch below -60 dB before the last sound
    std::size_t clips = 0;     // samples at either end of 16 bits
};

SoundMeasures measure(std::span<const float> sound);

/// Integrated loudness of Recommendation ITU-R BS.1770-4: K-weighted, in blocks of 400 ms that
/// overlap by three quarters, without those below -70 LUFS and those 10 LU below the rest.
double integratedLoudness(std::span<const float> sound);
