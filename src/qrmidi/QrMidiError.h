#pragma once

#include "audiounits/AudioUnitTypes.h"

/// Logs a failed MIDI call with what it was to do; success logs nothing. Whether it succeeded.
bool logFailure(const char* action, OSStatus status);
