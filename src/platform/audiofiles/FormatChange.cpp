#include "audiofiles/FormatChange.h"

#include "audiofiles/AudioFile.h"
#include "audiounits/StreamConversion.h"

FormatChange::FormatChange(const StreamDescription& from, const StreamDescription& to)
    : m_from(from), m_to(to) {
    if (!StreamConversion::supports(from) || from.mSampleRate > 1e7) {
        m_status = kAudioFileUnsupportedDataFormatError;
        return;
    }
    if (from.mSampleRate == to.mSampleRate)
        return;
    m_resampler = std::make_unique<Resampler>(static_cast<int>(from.mSampleRate),
                                              static_cast<int>(to.mSampleRate),
                                              static_cast<int>(to.mChannelsPerFrame));
    if (!m_resampler->valid())
        m_status = Resampler::available() ? kAudioFileUnsupportedDataFormatError
                                          : kAudioFileLibraryMissingError;
}

std::span<const std::byte> FormatChange::convert(const AudioBufferList& list,
                                                 std::uint32_t frames) {
    if (m_from == m_to)
        return {list.samples<const std::byte>(), std::size_t{frames} * m_to.mBytesPerFrame};
    readPlanes(list, frames);
    if (!m_resampler)
        return pack(m_planes, frames);
    return pack(m_resampled, m_resampler->process(m_planes, frames, m_resampled));
}

std::span<const std::byte> FormatChange::flush() {
    return m_resampler ? pack(m_resampled, m_resampler->flush(m_resampled))
                       : std::span<const std::byte>();
}

void FormatChange::readPlanes(const AudioBufferList& list, std::uint32_t frames) {
    for (std::uint32_t c = 0; c < 2; ++c) {
        m_planes[c].resize(frames);
        StreamConversion::read(list, m_from, c, m_planes[c]);
    }
    if (m_from.mChannelsPerFrame == 2 && m_to.mChannelsPerFrame == 1)
        for (std::uint32_t i = 0; i < frames; ++i)
            m_planes[0][i] = (m_planes[0][i] + m_planes[1][i]) * 0.5f;
}

std::span<const std::byte> FormatChange::pack(const std::vector<float>* planes,
                                              std::uint32_t frames) {
    m_packed.resize(std::size_t{frames} * m_to.mBytesPerFrame);
    AudioBufferList list = AudioBufferList::single(m_packed.data(), m_to.mChannelsPerFrame,
                                                   static_cast<std::uint32_t>(m_packed.size()));
    for (std::uint32_t c = 0; c < m_to.mChannelsPerFrame; ++c)
        StreamConversion::write(std::span(planes[c]).first(frames), m_to, c, list);
    return m_packed;
}
