// Blocks: copies of the samples.
#include <algorithm>

#include "ChannelCopy.h"
#include "VornWave2.h"
#include "VornWaveBlock.h"
#include "log/Log.h"

namespace {

constexpr auto kStereo = static_cast<std::int32_t>(WaveFormat::stereoInterleaved);

}  // namespace

VornWaveBlock::Span VornWaveBlock::firstFrames(std::uint32_t frames) const {
    Span span{nullptr, frames, 1};
    std::int32_t format = 0;
    // Clamped by the wave only: the caller asks for no more than the block holds.
    span.data = m_wave->retrieveWindowAt(m_startIndex, &span.frames, &format);
    span.channels = format == kStereo ? 2 : 1;
    return span;
}

std::uint32_t VornWaveBlock::floatsPerFrame() const {
    if (!m_wave)
        return m_myAudioDescription.mChannelsPerFrame;
    const Span span = firstFrames(0);
    return span.data ? span.channels : 2;
}

std::uint32_t VornWaveBlock::writeSilence(std::uint32_t frames, float* into,
                                          std::uint32_t channels) const {
    frames = std::min(m_frameCount, frames);
    std::fill_n(into, std::size_t{frames} * channels, 0.f);
    return frames;
}

std::uint32_t VornWaveBlock::write(std::uint32_t frames, float* into) const {
    if (!m_wave)
        return writeSilence(frames, into, m_myAudioDescription.mChannelsPerFrame);
    const Span span = firstFrames(frames);
    Log::line("WriteInto start");
    std::copy_n(span.data, std::size_t{span.frames} * span.channels, into);
    Log::line("WriteInto end");
    return span.frames;
}

std::uint32_t VornWaveBlock::write(std::uint32_t frames, float* into,
                                   std::uint32_t channels) const {
    if (!m_wave)
        return writeSilence(frames, into, channels);
    const Span span = firstFrames(frames);
    Log::line("WriteInto[%lu] start", static_cast<unsigned long>(channels));
    if (span.channels == channels)
        std::copy_n(span.data, std::size_t{span.frames} * channels, into);
    else if (span.channels == 2)
        ChannelCopy::mean(span.data, span.frames, into);
    else
        ChannelCopy::pickTwice(span.data, 1, span.frames, into);
    Log::line("WriteInto[%lu] end", static_cast<unsigned long>(channels));
    return span.frames;
}

std::uint32_t VornWaveBlock::extract(std::uint32_t frames, ExtractType type, float* into,
                                     std::uint32_t channels) const {
    if (!m_wave || type == ExtractType::all)
        return write(frames, into, channels);
    const Span span = firstFrames(frames);
    Log::line("ExtractInto[%d->%lu] start", static_cast<int>(span.channels),
              static_cast<unsigned long>(channels));
    const bool second = span.channels == 2 && type == ExtractType::second;
    const float* first = span.frames > 0 ? span.data + (second ? 1 : 0) : span.data;
    if (channels == 2)
        ChannelCopy::pickTwice(first, span.channels, span.frames, into);
    else
        ChannelCopy::pick(first, span.channels, span.frames, into);
    Log::line("ExtractInto[%lu] end", static_cast<unsigned long>(channels));
    return span.frames;
}

std::shared_ptr<VornWave2> VornWaveBlock::flattenInto(const std::string& folder,
                                                      std::uint32_t channels) const {
    StreamDescription description = m_myAudioDescription;
    description.mChannelsPerFrame = channels;
    description.mBytesPerFrame = description.mBytesPerPacket = 4 * channels;
    auto flat = VornWave2::mutableWaveOfLength(m_frameCount, description,
                                               m_wave ? m_wave->filename() : "Silence", folder);
    if (m_wave)
        write(flat->sampleCount(), flat->mutableData(), channels);
    return flat;
}
