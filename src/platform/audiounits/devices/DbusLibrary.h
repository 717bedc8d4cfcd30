#pragma once

#include <dbus/dbus.h>

#include "audiounits/devices/SharedLibrary.h"

#define OMBRIX_DBUS_FUNCTIONS(FUNCTION)                 \
    FUNCTION(dbus_bus_get_private)                      \
    FUNCTION(dbus_connection_close)                     \
    FUNCTION(dbus_connection_send_with_reply_and_block) \
    FUNCTION(dbus_connection_set_exit_on_disconnect)    \
    FUNCTION(dbus_connection_unref)                     \
    FUNCTION(dbus_error_free)                           \
    FUNCTION(dbus_error_init)                           \
    FUNCTION(dbus_message_append_args)                  \
    FUNCTION(dbus_message_iter_get_arg_type)            \
    FUNCTION(dbus_message_iter_get_basic)               \
    FUNCTION(dbus_message_iter_init)                    \
    FUNCTION(dbus_message_iter_recurse)                 \
    FUNCTION(dbus_message_new_method_call)              \
    FUNCTION(dbus_message_unref)

/// The D-Bus client library.
struct DbusLibrary {
    OMBRIX_DBUS_FUNCTIONS(OMBRIX_LIBRARY_MEMBER)
    /// Null where it is not installed. [control]
    static const DbusLibrary* get();
};
