#pragma once

#include <pulse/pulseaudio.h>

#include "audiounits/devices/SharedLibrary.h"

#define OMBRIX_PULSE_FUNCTIONS(FUNCTION)            \
    FUNCTION(pa_context_connect)                    \
    FUNCTION(pa_context_disconnect)                 \
    FUNCTION(pa_context_get_server_info)            \
    FUNCTION(pa_context_get_sink_info_by_name)      \
    FUNCTION(pa_context_get_sink_info_list)         \
    FUNCTION(pa_context_get_source_info_by_name)    \
    FUNCTION(pa_context_get_source_info_list)       \
    FUNCTION(pa_context_get_state)                  \
    FUNCTION(pa_context_new)                        \
    FUNCTION(pa_context_rttime_new)                 \
    FUNCTION(pa_context_set_state_callback)         \
    FUNCTION(pa_context_unref)                      \
    FUNCTION(pa_operation_unref)                    \
    FUNCTION(pa_rtclock_now)                        \
    FUNCTION(pa_stream_begin_write)                 \
    FUNCTION(pa_stream_connect_playback)            \
    FUNCTION(pa_stream_connect_record)              \
    FUNCTION(pa_stream_disconnect)                  \
    FUNCTION(pa_stream_drop)                        \
    FUNCTION(pa_stream_get_device_name)             \
    FUNCTION(pa_stream_get_latency)                 \
    FUNCTION(pa_stream_get_state)                   \
    FUNCTION(pa_stream_new)                         \
    FUNCTION(pa_stream_peek)                        \
    FUNCTION(pa_stream_readable_size)               \
    FUNCTION(pa_stream_set_latency_update_callback) \
    FUNCTION(pa_stream_set_read_callback)           \
    FUNCTION(pa_stream_set_state_callback)          \
    FUNCTION(pa_stream_set_underflow_callback)      \
    FUNCTION(pa_stream_set_write_callback)          \
    FUNCTION(pa_stream_unref)                       \
    FUNCTION(pa_stream_write)                       \
    FUNCTION(pa_threaded_mainloop_free)             \
    FUNCTION(pa_threaded_mainloop_get_api)          \
    FUNCTION(pa_threaded_mainloop_lock)             \
    FUNCTION(pa_threaded_mainloop_new)              \
    FUNCTION(pa_threaded_mainloop_once_unlocked)    \
    FUNCTION(pa_threaded_mainloop_signal)           \
    FUNCTION(pa_threaded_mainloop_start)            \
    FUNCTION(pa_threaded_mainloop_stop)             \
    FUNCTION(pa_threaded_mainloop_unlock)           \
    FUNCTION(pa_threaded_mainloop_wait)

/// The client library of PulseAudio; PipeWire answers it too.
struct PulseLibrary {
    OMBRIX_PULSE_FUNCTIONS(OMBRIX_LIBRARY_MEMBER)
    /// Null where it is not installed. [control]
    static const PulseLibrary* get();
};
