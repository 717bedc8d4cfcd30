#include "audiofiles/Resampler.h"

#include <algorithm>

#include "audiofiles/FfmpegLibraries.h"

bool Resampler::available() {
    return resampleFunctions() != nullptr;
}

Resampler::Resampler(int inputRate, int outputRate, int channels)
    : m_swr(resampleFunctions()), m_channels(channels) {
    if (!m_swr)
        return;
    AVChannelLayout layout = AV_CHANNEL_LAYOUT_MONO;
    if (channels == 2)
        layout = AV_CHANNEL_LAYOUT_STEREO;
    m_swr->swr_alloc_set_opts2(&m_context, &layout, AV_SAMPLE_FMT_FLTP, outputRate, &layout,
                               AV_SAMPLE_FMT_FLTP, inputRate, 0, nullptr);
    if (m_context && m_swr->swr_init(m_context) < 0)
        m_swr->swr_free(&m_context);
}

Resampler::~Resampler() {
    if (m_context)
        m_swr->swr_free(&m_context);
}

std::uint32_t Resampler::process(const std::vector<float>* input, std::uint32_t frames,
                                 std::vector<float>* output) {
    const std::uint8_t* planes[2] = {reinterpret_cast<const std::uint8_t*>(input[0].data()),
                                     reinterpret_cast<const std::uint8_t*>(input[1].data())};
    return convert(planes, static_cast<int>(frames), output);
}

std::uint32_t Resampler::flush(std::vector<float>* output) {
    return convert(nullptr, 0, output);
}

std::uint32_t Resampler::convert(const std::uint8_t** input, int frames,
                                 std::vector<float>* output) {
    // The estimate is an upper bound; when flushing it counts what the filter still holds.
    const int room = std::max(m_swr->swr_get_out_samples(m_context, frames), 1024);
    std::uint8_t* planes[2] = {};
    for (int c = 0; c < m_channels; ++c) {
        if (output[c].size() < static_cast<std::size_t>(room))
            output[c].resize(static_cast<std::size_t>(room));
        planes[c] = reinterpret_cast<std::uint8_t*>(output[c].data());
    }
    return static_cast<std::uint32_t>(
        std::max(m_swr->swr_convert(m_context, planes, room, input, frames), 0));
}
