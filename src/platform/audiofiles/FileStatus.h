#pragma once

#include "audiounits/AudioUnitTypes.h"

/// The audio file service's status for an errno of a call that opens, reads or writes.
OSStatus statusOfErrno(int error);
