#include "midi/backends/AlsaSequencerLibrary.h"

#include "audiounits/devices/AlsaLibrary.h"

const AlsaSequencerLibrary* AlsaSequencerLibrary::get() {
    static AlsaSequencerLibrary table;
    static const bool usable = [] {
        SharedLibrary library("libasound.so.2");
        OMBRIX_SEQUENCER_FUNCTIONS(OMBRIX_LIBRARY_BIND)
        return library.complete() && AlsaLibrary::get();
    }();
    return usable ? &table : nullptr;
}
