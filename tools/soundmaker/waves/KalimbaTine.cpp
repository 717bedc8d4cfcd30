#include "Modes.h"
#include "Waves.h"

/// A steel tongue held at one end and let go by a thumb: the modes of a clamped bar,
/// 1, 6.267, 17.55 (Lord Rayleigh, "The Theory of Sound", 1877), over a wooden box, and the
/// neighbours that sing along (David M. F. Chapman, "The tones of the kalimba (African thumb
/// piano)", 2012).
Sound kalimbaTine() {
    constexpr Mode kTine[] = {
        {kPitch, 1, 7.5}, {kPitch * 6.267, 0.3, 2.4}, {kPitch * 17.55, 0.1, 0.4}};
    constexpr Mode kBox[] = {{187, 0.16, 0.18}, {331, 0.12, 0.14}, {1240, 0.12, 0.1}};
    // Neighbours: fifth, octave, tenth, twelfth and two octaves, woken by the box.
    constexpr Mode kNeighbours[] = {{kPitch * 1.5, 0.07, 11},
                                    {kPitch * 2, 0.24, 8},
                                    {kPitch * 2.5, 0.05, 9},
                                    {kPitch * 3, 0.1, 9},
                                    {kPitch * 4, 0.07, 6}};
    Sound sound(framesIn(4));
    for (const Mode& mode : kTine)
        addMode(sound, mode);
    for (const Mode& mode : kBox)
        addMode(sound, mode);
    for (const Mode& mode : kNeighbours)
        addBeatingMode(sound, mode, 1.1 * mode.hertz / kPitch);
    return sound;
}
