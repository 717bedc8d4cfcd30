#include "audiounits/devices/JackLibrary.h"

namespace {
void discard(const char*) {}
}  // namespace

const JackLibrary* JackLibrary::get() {
    static JackLibrary table;
    static const bool usable = [] {
        SharedLibrary library("libjack.so.0");
        OMBRIX_JACK_FUNCTIONS(OMBRIX_LIBRARY_BIND)
        if (library.complete()) {
            table.jack_set_error_function(discard);
            table.jack_set_info_function(discard);
        }
        return library.complete();
    }();
    return usable ? &table : nullptr;
}
