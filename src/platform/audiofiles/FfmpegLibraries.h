#pragma once

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/log.h>
#include <libavutil/mathematics.h>
#include <libswresample/swresample.h>
}

/// The functions of the FFmpeg libraries that we call, found when first asked for: a program that
/// only meets plain PCM at the graph's rate never loads them. Libraries stay loaded. [any thread]

struct ResampleFunctions {
    decltype(&::swr_alloc_set_opts2) swr_alloc_set_opts2;
    decltype(&::swr_init) swr_init;
    decltype(&::swr_get_out_samples) swr_get_out_samples;
    decltype(&::swr_convert) swr_convert;
    decltype(&::swr_free) swr_free;
};

struct DecodeFunctions {
    decltype(&::av_log_set_level) av_log_set_level;
    decltype(&::av_malloc) av_malloc;
    decltype(&::av_freep) av_freep;
    decltype(&::av_strdup) av_strdup;
    decltype(&::av_rescale_q) av_rescale_q;
    decltype(&::av_frame_alloc) av_frame_alloc;
    decltype(&::av_frame_free) av_frame_free;
    decltype(&::av_frame_unref) av_frame_unref;
    decltype(&::av_packet_alloc) av_packet_alloc;
    decltype(&::av_packet_free) av_packet_free;
    decltype(&::av_packet_unref) av_packet_unref;
    decltype(&::av_get_bits_per_sample) av_get_bits_per_sample;
    decltype(&::avcodec_find_decoder) avcodec_find_decoder;
    decltype(&::avcodec_alloc_context3) avcodec_alloc_context3;
    decltype(&::avcodec_parameters_to_context) avcodec_parameters_to_context;
    decltype(&::avcodec_open2) avcodec_open2;
    decltype(&::avcodec_free_context) avcodec_free_context;
    decltype(&::avcodec_send_packet) avcodec_send_packet;
    decltype(&::avcodec_receive_frame) avcodec_receive_frame;
    decltype(&::avio_alloc_context) avio_alloc_context;
    decltype(&::avio_context_free) avio_context_free;
    decltype(&::avformat_alloc_context) avformat_alloc_context;
    decltype(&::avformat_open_input) avformat_open_input;
    decltype(&::avformat_find_stream_info) avformat_find_stream_info;
    decltype(&::avformat_close_input) avformat_close_input;
    decltype(&::av_find_best_stream) av_find_best_stream;
    decltype(&::av_read_frame) av_read_frame;
};

/// Null when libswresample is not installed.
const ResampleFunctions* resampleFunctions();

/// Null when libavformat or libavcodec is not installed.
const DecodeFunctions* decodeFunctions();

/// Gives back the memory of library code that was only needed once, or until the next file. Costs
/// a fraction of a millisecond. Only after `decodeFunctions`.
void releaseDecodePages();
