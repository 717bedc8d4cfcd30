#include "midi/network/AvahiLibrary.h"

const AvahiLibrary* AvahiLibrary::get() {
    static AvahiLibrary table;
    static const bool usable = [] {
        bool complete = true;
        {
            SharedLibrary library("libavahi-common.so.3");
            OMBRIX_AVAHI_COMMON_FUNCTIONS(OMBRIX_LIBRARY_BIND)
            complete = library.complete();
        }
        SharedLibrary library("libavahi-client.so.3");
        OMBRIX_AVAHI_CLIENT_FUNCTIONS(OMBRIX_LIBRARY_BIND)
        return complete && library.complete();
    }();
    return usable ? &table : nullptr;
}
