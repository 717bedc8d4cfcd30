#pragma once

#include <avahi-client/client.h>
#include <avahi-client/lookup.h>
#include <avahi-client/publish.h>
#include <avahi-common/alternative.h>
#include <avahi-common/error.h>
#include <avahi-common/malloc.h>
#include <avahi-common/simple-watch.h>

#include "audiounits/devices/SharedLibrary.h"

#define OMBRIX_AVAHI_CLIENT_FUNCTIONS(FUNCTION) \
    FUNCTION(avahi_client_errno)                \
    FUNCTION(avahi_client_free)                 \
    FUNCTION(avahi_client_new)                  \
    FUNCTION(avahi_entry_group_add_service)     \
    FUNCTION(avahi_entry_group_commit)          \
    FUNCTION(avahi_entry_group_free)            \
    FUNCTION(avahi_entry_group_get_client)      \
    FUNCTION(avahi_entry_group_new)             \
    FUNCTION(avahi_entry_group_reset)           \
    FUNCTION(avahi_service_browser_free)        \
    FUNCTION(avahi_service_browser_new)         \
    FUNCTION(avahi_service_resolver_free)       \
    FUNCTION(avahi_service_resolver_new)

#define OMBRIX_AVAHI_COMMON_FUNCTIONS(FUNCTION) \
    FUNCTION(avahi_alternative_service_name)    \
    FUNCTION(avahi_free)                        \
    FUNCTION(avahi_simple_poll_free)            \
    FUNCTION(avahi_simple_poll_get)             \
    FUNCTION(avahi_simple_poll_iterate)         \
    FUNCTION(avahi_simple_poll_new)             \
    FUNCTION(avahi_simple_poll_wakeup)          \
    FUNCTION(avahi_strerror)

/// The client libraries of the daemon that announces and finds services (DNS-SD).
struct AvahiLibrary {
    OMBRIX_AVAHI_CLIENT_FUNCTIONS(OMBRIX_LIBRARY_MEMBER)
    OMBRIX_AVAHI_COMMON_FUNCTIONS(OMBRIX_LIBRARY_MEMBER)
    /// Null where they are not installed. [control]
    static const AvahiLibrary* get();
};
