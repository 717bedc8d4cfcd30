#pragma once

#include <cmath>
#include <numbers>

#include "Sound.h"

/// One way in which a struck body rings: a sine that fades.
struct Mode {
    double hertz;
    double amplitude;
    double fadeSeconds;  // until it is 60 dB down
};

/// Adds a mode that is struck at frame `start`, at rest before. Modes above 20 kHz are left out.
inline void addMode(Sound& sound, const Mode& mode, std::size_t start = 0) {
    if (mode.hertz > 20000)
        return;
    const double turn = 2 * std::numbers::pi * mode.hertz / kFramesPerSecond;
    const double decay = std::pow(10., -3 / (mode.fadeSeconds * kFramesPerSecond));
    const double real = decay * std::cos(turn), imaginary = decay * std::sin(turn);
    double x = mode.amplitude, y = 0;
    for (std::size_t i = start; i < sound.size(); ++i) {
        sound[i] += y;
        const double turned = x * real - y * imaginary;
        y = x * imaginary + y * real;
        x = turned;
    }
}

/// A mode whose two halves beat, as those of every body do that is not perfectly round.
inline void addBeatingMode(Sound& sound, const Mode& mode, double beatsPerSecond) {
    const double half = beatsPerSecond / 2;
    addMode(sound, {mode.hertz - half, mode.amplitude * 0.55, mode.fadeSeconds});
    addMode(sound, {mode.hertz + half, mode.amplitude * 0.45, mode.fadeSeconds});
}
