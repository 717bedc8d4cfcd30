#include "audiounits/devices/SampleRateLibrary.h"

const SampleRateLibrary* SampleRateLibrary::get() {
    static SampleRateLibrary table;
    static const bool usable = [] {
        SharedLibrary library("libsamplerate.so.0");
        OMBRIX_SAMPLERATE_FUNCTIONS(OMBRIX_LIBRARY_BIND) return library.complete();
    }();
    return usable ? &table : nullptr;
}
