#pragma once

#include <zip.h>

#include "audiounits/devices/SharedLibrary.h"

#define OMBRIX_ZIP_FUNCTIONS(FUNCTION)         \
    FUNCTION(zip_fdopen)                       \
    FUNCTION(zip_open_from_source)             \
    FUNCTION(zip_close)                        \
    FUNCTION(zip_discard)                      \
    FUNCTION(zip_get_error)                    \
    FUNCTION(zip_get_num_entries)              \
    FUNCTION(zip_stat_index)                   \
    FUNCTION(zip_file_get_external_attributes) \
    FUNCTION(zip_fopen_index)                  \
    FUNCTION(zip_fread)                        \
    FUNCTION(zip_fclose)                       \
    FUNCTION(zip_file_get_error)               \
    FUNCTION(zip_file_add)                     \
    FUNCTION(zip_error_init_with_code)         \
    FUNCTION(zip_error_strerror)               \
    FUNCTION(zip_error_fini)                   \
    FUNCTION(zip_source_buffer_create)         \
    FUNCTION(zip_source_filep_create)          \
    FUNCTION(zip_source_keep)                  \
    FUNCTION(zip_source_free)                  \
    FUNCTION(zip_source_open)                  \
    FUNCTION(zip_source_read)                  \
    FUNCTION(zip_source_close)

/// libzip, opened when the first archive is met: it brings a cryptographic library along, which
/// would cost every start of the program several milliseconds.
struct ZipLibrary {
    OMBRIX_ZIP_FUNCTIONS(OMBRIX_LIBRARY_MEMBER)
    /// Null where it is not installed. [control]
    static const ZipLibrary* get();
};

inline constexpr const char* kNoZipLibrary = "cannot be used: libzip is not installed";
