#pragma once

#include "Sound.h"

/// Makes a struck sound begin and end in silence, with no step and no DC, its peak at 0.89.
void finishStruck(Sound& sound);

/// Turns a loop until it begins where it crosses 0 upwards at its calmest, takes its DC out and
/// brings its peak to 0.89. Where its end joins its start nothing changes.
void finishLoop(Sound& sound);
