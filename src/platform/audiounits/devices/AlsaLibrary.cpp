#include "audiounits/devices/AlsaLibrary.h"

#include "audiounits/devices/JackLibrary.h"

namespace {
void discard(const char*, int, const char*, int, const char*, ...) {}
}  // namespace

const AlsaLibrary* AlsaLibrary::get() {
    static AlsaLibrary table;
    static const bool usable = [] {
        SharedLibrary library("libasound.so.2");
        OMBRIX_ALSA_FUNCTIONS(OMBRIX_LIBRARY_BIND)
        if (library.complete())
            table.snd_lib_error_set_handler(discard);
        return library.complete();
    }();
    JackLibrary::get();  // a plugin of ALSA uses it, and it must be silent then too
    return usable ? &table : nullptr;
}
