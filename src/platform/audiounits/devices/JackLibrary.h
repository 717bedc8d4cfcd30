#pragma once

#include <jack/jack.h>
#include <jack/midiport.h>

#include "audiounits/devices/SharedLibrary.h"

#define OMBRIX_JACK_FUNCTIONS(FUNCTION)           \
    FUNCTION(jack_activate)                       \
    FUNCTION(jack_client_close)                   \
    FUNCTION(jack_client_open)                    \
    FUNCTION(jack_connect)                        \
    FUNCTION(jack_deactivate)                     \
    FUNCTION(jack_free)                           \
    FUNCTION(jack_get_buffer_size)                \
    FUNCTION(jack_get_client_name)                \
    FUNCTION(jack_get_ports)                      \
    FUNCTION(jack_get_sample_rate)                \
    FUNCTION(jack_is_realtime)                    \
    FUNCTION(jack_midi_clear_buffer)              \
    FUNCTION(jack_midi_event_get)                 \
    FUNCTION(jack_midi_event_write)               \
    FUNCTION(jack_midi_get_event_count)           \
    FUNCTION(jack_on_info_shutdown)               \
    FUNCTION(jack_port_by_id)                     \
    FUNCTION(jack_port_by_name)                   \
    FUNCTION(jack_port_disconnect)                \
    FUNCTION(jack_port_flags)                     \
    FUNCTION(jack_port_get_aliases)               \
    FUNCTION(jack_port_get_buffer)                \
    FUNCTION(jack_port_get_latency_range)         \
    FUNCTION(jack_port_is_mine)                   \
    FUNCTION(jack_port_name)                      \
    FUNCTION(jack_port_name_size)                 \
    FUNCTION(jack_port_register)                  \
    FUNCTION(jack_set_buffer_size_callback)       \
    FUNCTION(jack_set_error_function)             \
    FUNCTION(jack_set_info_function)              \
    FUNCTION(jack_set_port_connect_callback)      \
    FUNCTION(jack_set_port_registration_callback) \
    FUNCTION(jack_set_process_callback)           \
    FUNCTION(jack_set_sample_rate_callback)       \
    FUNCTION(jack_set_xrun_callback)

/// The client library of the JACK server, which is silenced: it would write to stderr.
struct JackLibrary {
    OMBRIX_JACK_FUNCTIONS(OMBRIX_LIBRARY_MEMBER)
    /// Null where it is not installed. [control]
    static const JackLibrary* get();
};
