#pragma once

#include <array>
#include <string_view>

#include "Sound.h"

/// Each in a source file of its own below waves/, with its model and where it is published.
Sound bowedStrings();
Sound breathPipe();
Sound choirVowel();
Sound feltPiano();
Sound kalimbaTine();
Sound lowDrone();
Sound metalScrape();
Sound nightWind();
Sound pluckedString();
Sound singingBowl();
Sound struckBell();
Sound waterBubbles();
Sound wineGlass();
Sound woodBar();

/// A sound that the instrument ships with.
struct Wave {
    std::string_view name;  // of the file, without ".wav"; the source file's without spaces
    Sound (*make)();        // unfinished, at any level
    double hertz;           // its fundamental; 0 for none
    bool loops;             // its end joins its start, else it begins and ends in silence
};

inline constexpr std::array kWaves{
    Wave{"Bowed Strings", bowedStrings, kPitch, true},
    Wave{"Breath Pipe", breathPipe, kPitch, true},
    Wave{"Choir Vowel", choirVowel, kPitch, true},
    Wave{"Felt Piano", feltPiano, kPitch, false},
    Wave{"Kalimba Tine", kalimbaTine, kPitch, false},
    Wave{"Low Drone", lowDrone, kPitch / 4, true},  // two octaves down: it is to be low
    Wave{"Metal Scrape", metalScrape, 0, true},
    Wave{"Night Wind", nightWind, 0, true},
    Wave{"Plucked String", pluckedString, kPitch, false},
    Wave{"Singing Bowl", singingBowl, kPitch, true},
    Wave{"Struck Bell", struckBell, kPitch, false},
    Wave{"Water Bubbles", waterBubbles, 0, true},
    Wave{"Wine Glass", wineGlass, kPitch, true},
    Wave{"Wood Bar", woodBar, kPitch, false},
};
