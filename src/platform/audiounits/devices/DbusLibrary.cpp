#include "audiounits/devices/DbusLibrary.h"

const DbusLibrary* DbusLibrary::get() {
    static DbusLibrary table;
    static const bool usable = [] {
        SharedLibrary library("libdbus-1.so.3");
        OMBRIX_DBUS_FUNCTIONS(OMBRIX_LIBRARY_BIND)
        return library.complete();
    }();
    return usable ? &table : nullptr;
}
