#pragma once

#include <alsa/asoundlib.h>

#include "audiounits/devices/SharedLibrary.h"

#define OMBRIX_SEQUENCER_FUNCTIONS(FUNCTION)   \
    FUNCTION(snd_midi_event_decode)            \
    FUNCTION(snd_midi_event_encode)            \
    FUNCTION(snd_midi_event_free)              \
    FUNCTION(snd_midi_event_init)              \
    FUNCTION(snd_midi_event_new)               \
    FUNCTION(snd_midi_event_no_status)         \
    FUNCTION(snd_seq_client_id)                \
    FUNCTION(snd_seq_client_info_free)         \
    FUNCTION(snd_seq_client_info_get_client)   \
    FUNCTION(snd_seq_client_info_malloc)       \
    FUNCTION(snd_seq_client_info_set_client)   \
    FUNCTION(snd_seq_close)                    \
    FUNCTION(snd_seq_connect_from)             \
    FUNCTION(snd_seq_create_simple_port)       \
    FUNCTION(snd_seq_delete_simple_port)       \
    FUNCTION(snd_seq_disconnect_from)          \
    FUNCTION(snd_seq_event_input)              \
    FUNCTION(snd_seq_event_output_direct)      \
    FUNCTION(snd_seq_open)                     \
    FUNCTION(snd_seq_poll_descriptors)         \
    FUNCTION(snd_seq_port_info_free)           \
    FUNCTION(snd_seq_port_info_get_capability) \
    FUNCTION(snd_seq_port_info_get_name)       \
    FUNCTION(snd_seq_port_info_get_port)       \
    FUNCTION(snd_seq_port_info_malloc)         \
    FUNCTION(snd_seq_port_info_set_client)     \
    FUNCTION(snd_seq_port_info_set_port)       \
    FUNCTION(snd_seq_query_next_client)        \
    FUNCTION(snd_seq_query_next_port)          \
    FUNCTION(snd_seq_set_client_name)

/// The sequencer of ALSA's library, which is silenced as a whole.
struct AlsaSequencerLibrary {
    OMBRIX_SEQUENCER_FUNCTIONS(OMBRIX_LIBRARY_MEMBER)
    /// Null where it is not installed. [control]
    static const AlsaSequencerLibrary* get();
};
