#pragma once

#include <samplerate.h>

#include "audiounits/devices/SharedLibrary.h"

#define OMBRIX_SAMPLERATE_FUNCTIONS(FUNCTION) \
    FUNCTION(src_new)                         \
    FUNCTION(src_delete)                      \
    FUNCTION(src_process)

/// libsamplerate, opened when a device does not run at the graph's rate.
struct SampleRateLibrary {
    OMBRIX_SAMPLERATE_FUNCTIONS(OMBRIX_LIBRARY_MEMBER)
    /// Null where it is not installed. [control]
    static const SampleRateLibrary* get();
};
