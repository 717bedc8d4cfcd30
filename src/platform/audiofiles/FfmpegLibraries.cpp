#include "audiofiles/FfmpegLibraries.h"

#include <dlfcn.h>

#include <optional>
#include <string>

#include "audiofiles/LibraryPages.h"

namespace {

/// One library of the version that the headers describe.
class Library {
  public:
    Library(const char* name, int version)
        : m_handle(dlopen((std::string(name) + ".so." + std::to_string(version)).c_str(),
                          RTLD_LAZY | RTLD_LOCAL)) {}

    /// Clears `complete` when the function is not there.
    template <typename Function>
    void find(Function& function, const char* name, bool& complete) const {
        function = m_handle ? reinterpret_cast<Function>(dlsym(m_handle, name)) : nullptr;
        complete = complete && function;
    }

  private:
    void* m_handle;
};

#define OMBRIX_FIND(library, name) library.find(table.name, #name, complete)

std::optional<ResampleFunctions> findResampleFunctions() {
    const Library swresample("libswresample", LIBSWRESAMPLE_VERSION_MAJOR);
    ResampleFunctions table{};
    bool complete = true;
    OMBRIX_FIND(swresample, swr_alloc_set_opts2);
    OMBRIX_FIND(swresample, swr_init);
    OMBRIX_FIND(swresample, swr_get_out_samples);
    OMBRIX_FIND(swresample, swr_convert);
    OMBRIX_FIND(swresample, swr_free);
    return complete ? std::optional(table) : std::nullopt;
}

/// Made just before the decoding libraries are opened.
const LibraryPages& libraryPages() {
    static const auto* pages = new LibraryPages;
    return *pages;
}

std::optional<DecodeFunctions> findDecodeFunctions() {
    libraryPages();
    const Library avutil("libavutil", LIBAVUTIL_VERSION_MAJOR);
    const Library avcodec("libavcodec", LIBAVCODEC_VERSION_MAJOR);
    const Library avformat("libavformat", LIBAVFORMAT_VERSION_MAJOR);
    DecodeFunctions table{};
    bool complete = true;
    OMBRIX_FIND(avutil, av_log_set_level);
    OMBRIX_FIND(avutil, av_malloc);
    OMBRIX_FIND(avutil, av_freep);
    OMBRIX_FIND(avutil, av_strdup);
    OMBRIX_FIND(avutil, av_rescale_q);
    OMBRIX_FIND(avutil, av_frame_alloc);
    OMBRIX_FIND(avutil, av_frame_free);
    OMBRIX_FIND(avutil, av_frame_unref);
    OMBRIX_FIND(avcodec, av_packet_alloc);
    OMBRIX_FIND(avcodec, av_packet_free);
    OMBRIX_FIND(avcodec, av_packet_unref);
    OMBRIX_FIND(avcodec, av_get_bits_per_sample);
    OMBRIX_FIND(avcodec, avcodec_find_decoder);
    OMBRIX_FIND(avcodec, avcodec_alloc_context3);
    OMBRIX_FIND(avcodec, avcodec_parameters_to_context);
    OMBRIX_FIND(avcodec, avcodec_open2);
    OMBRIX_FIND(avcodec, avcodec_free_context);
    OMBRIX_FIND(avcodec, avcodec_send_packet);
    OMBRIX_FIND(avcodec, avcodec_receive_frame);
    OMBRIX_FIND(avformat, avio_alloc_context);
    OMBRIX_FIND(avformat, avio_context_free);
    OMBRIX_FIND(avformat, avformat_alloc_context);
    OMBRIX_FIND(avformat, avformat_open_input);
    OMBRIX_FIND(avformat, avformat_find_stream_info);
    OMBRIX_FIND(avformat, avformat_close_input);
    OMBRIX_FIND(avformat, av_find_best_stream);
    OMBRIX_FIND(avformat, av_read_frame);
    if (!complete)
        return std::nullopt;
    releaseDecodePages();
    table.av_log_set_level(AV_LOG_QUIET);  // damaged files are reported by us, in one line
    return table;
}

#undef OMBRIX_FIND

}  // namespace

const ResampleFunctions* resampleFunctions() {
    static const auto table = findResampleFunctions();
    return table ? &*table : nullptr;
}

const DecodeFunctions* decodeFunctions() {
    static const auto table = findDecodeFunctions();
    return table ? &*table : nullptr;
}

void releaseDecodePages() {
    libraryPages().releaseNew();
}
