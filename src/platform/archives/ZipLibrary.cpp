#include "archives/ZipLibrary.h"

const ZipLibrary* ZipLibrary::get() {
    static ZipLibrary table;
    static const bool usable = [] {
        SharedLibrary library("libzip.so.4");
        OMBRIX_ZIP_FUNCTIONS(OMBRIX_LIBRARY_BIND) return library.complete();
    }();
    return usable ? &table : nullptr;
}
