#include <cmath>
#include <numbers>

#include "Modes.h"
#include "Waves.h"

/// Three strings of one piano key, struck through felt: stiff-string partials (Harvey Fletcher,
/// "Normal vibration frequencies of a stiff piano string", 1964), each of them a quick loud part
/// and a slow soft one that beat (Gabriel Weinreich, "Coupled piano strings", 1977).
Sound feltPiano() {
    constexpr double kStiffness = 0.0007;
    constexpr double kStruckAt = 1 / 7.5;            // of the length
    constexpr double kFelt = 1500;                   // hertz: above, it damps what it strikes
    constexpr double kStrings[] = {-0.31, 0, 0.27};  // hertz off, of each string's fundamental
    constexpr Mode kBoard[] = {
        {92, 0.1, 0.25}, {143, 0.12, 0.2}, {217, 0.1, 0.16}, {305, 0.08, 0.12}};
    Sound sound(framesIn(6));
    for (const Mode& mode : kBoard)
        addMode(sound, mode);
    for (int k = 1; k <= 24; ++k) {
        const double stretch = std::sqrt((1 + kStiffness * k * k) / (1 + kStiffness));
        const double hertz = kPitch * k * stretch;
        const double level =
            std::abs(std::sin(std::numbers::pi * k * kStruckAt)) / k * std::exp(-hertz / kFelt);
        const double fadeSeconds = 26 / (1 + 0.4 * k);
        addMode(sound, {hertz, level, fadeSeconds / 4});
        for (const double off : kStrings)
            addMode(sound, {hertz + off * k, level * 0.28, fadeSeconds});
    }
    return sound;
}
