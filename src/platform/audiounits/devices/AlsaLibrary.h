#pragma once

#include <alsa/asoundlib.h>

#include "audiounits/devices/SharedLibrary.h"

#define OMBRIX_ALSA_FUNCTIONS(FUNCTION)              \
    FUNCTION(snd_device_name_free_hint)              \
    FUNCTION(snd_device_name_get_hint)               \
    FUNCTION(snd_device_name_hint)                   \
    FUNCTION(snd_lib_error_set_handler)              \
    FUNCTION(snd_pcm_close)                          \
    FUNCTION(snd_pcm_hw_params)                      \
    FUNCTION(snd_pcm_hw_params_any)                  \
    FUNCTION(snd_pcm_hw_params_free)                 \
    FUNCTION(snd_pcm_hw_params_get_buffer_size)      \
    FUNCTION(snd_pcm_hw_params_get_period_size)      \
    FUNCTION(snd_pcm_hw_params_malloc)               \
    FUNCTION(snd_pcm_hw_params_set_access)           \
    FUNCTION(snd_pcm_hw_params_set_buffer_size_near) \
    FUNCTION(snd_pcm_hw_params_set_channels_near)    \
    FUNCTION(snd_pcm_hw_params_set_format)           \
    FUNCTION(snd_pcm_hw_params_set_period_size_near) \
    FUNCTION(snd_pcm_hw_params_set_rate_near)        \
    FUNCTION(snd_pcm_hw_params_set_rate_resample)    \
    FUNCTION(snd_pcm_hw_params_test_format)          \
    FUNCTION(snd_pcm_open)                           \
    FUNCTION(snd_pcm_readi)                          \
    FUNCTION(snd_pcm_recover)                        \
    FUNCTION(snd_pcm_start)                          \
    FUNCTION(snd_pcm_sw_params)                      \
    FUNCTION(snd_pcm_sw_params_current)              \
    FUNCTION(snd_pcm_sw_params_free)                 \
    FUNCTION(snd_pcm_sw_params_malloc)               \
    FUNCTION(snd_pcm_sw_params_set_avail_min)        \
    FUNCTION(snd_pcm_sw_params_set_start_threshold)  \
    FUNCTION(snd_pcm_wait)                           \
    FUNCTION(snd_pcm_writei)

/// The library of ALSA, which is silenced: it would write to stderr.
struct AlsaLibrary {
    OMBRIX_ALSA_FUNCTIONS(OMBRIX_LIBRARY_MEMBER)
    /// Null where it is not installed. [control]
    static const AlsaLibrary* get();
};
