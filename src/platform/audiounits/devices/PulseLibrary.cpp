#include "audiounits/devices/PulseLibrary.h"

const PulseLibrary* PulseLibrary::get() {
    static PulseLibrary table;
    static const bool usable = [] {
        SharedLibrary library("libpulse.so.0");
        OMBRIX_PULSE_FUNCTIONS(OMBRIX_LIBRARY_BIND)
        return library.complete();
    }();
    return usable ? &table : nullptr;
}
