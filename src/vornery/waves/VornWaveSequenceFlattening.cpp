// Sequences: copies in one piece.
#include <algorithm>
#include <limits>

#include "ChannelCopy.h"
#include "FlatTarget.h"
#include "VornWave2.h"
#include "VornWaveSequence.h"

namespace {

constexpr auto kStereo = static_cast<std::int32_t>(WaveFormat::stereoInterleaved);

}  // namespace

std::shared_ptr<VornWave2> VornWaveSequence::flattenInto(const std::string& folder,
                                                         std::uint32_t channels) const {
    StreamDescription description = m_myAudioDescription;
    description.mChannelsPerFrame = channels;
    description.mBytesPerFrame = description.mBytesPerPacket = 4 * channels;
    const bool fits = length() <= std::numeric_limits<std::uint32_t>::max();
    FlatTarget flat(fits ? sampleCount() : 0, description, "Sequence", folder);
    for (const auto& block : m_blocks) {
        const std::uint32_t frames = flat.room(block->sampleCount(), channels);
        flat.advance(std::size_t{block->extract(frames, m_extractType, flat.data(), channels)} *
                     channels);
    }
    return flat.wave();
}

std::shared_ptr<VornWaveBlock> VornWaveSequence::flattenAndPadSequenceTo(
    std::uint32_t length, const std::string& folder) const {
    if (isEntirelySilence())
        return nullptr;
    if (m_extractType != ExtractType::all && m_myAudioDescription.mChannelsPerFrame != 1)
        return oneChannelPadded(length, folder, m_extractType == ExtractType::second);
    return padded(length, folder);
}

std::shared_ptr<VornWaveBlock> VornWaveSequence::flattenAndPadSequenceTo(
    std::uint32_t length, const std::string& folder, bool oneChannelOnly) const {
    return m_myAudioDescription.mChannelsPerFrame == 1
               ? flattenAndPadSequenceTo(length, folder)
               : oneChannelPadded(length, folder, oneChannelOnly);
}

std::shared_ptr<VornWaveBlock> VornWaveSequence::padded(std::uint32_t length,
                                                        const std::string& folder) const {
    if (m_blocks.size() == 1 && sampleCount() >= length)
        return m_blocks.front();
    FlatTarget flat(std::max(sampleCount(), length), m_myAudioDescription, "Sequence", folder);
    std::uint32_t wanted = length;
    for (const auto& block : m_blocks) {
        const std::uint32_t frames = std::min(block->sampleCount(), wanted);
        block->write(flat.room(frames, block->floatsPerFrame()), flat.data());
        flat.advance(std::size_t{frames} * m_myAudioDescription.mChannelsPerFrame);
        wanted -= frames;
    }
    return flat.block();
}

std::shared_ptr<VornWaveBlock> VornWaveSequence::oneChannelPadded(std::uint32_t length,
                                                                  const std::string& folder,
                                                                  bool second) const {
    FlatTarget flat(length, StreamDescription::float32(1), "Sequence", folder);
    for (const auto& block : m_blocks) {
        std::uint32_t frames = flat.room(block->sampleCount(), 1);
        std::int32_t format = 0;
        const float* data = block->retrieveWindowAt(0, &frames, &format);
        const bool stereo = format == kStereo;
        if (data && frames > 0)
            ChannelCopy::pick(data + (stereo && second ? 1 : 0), stereo ? 2 : 1, frames,
                              flat.data());
        flat.advance(frames);
    }
    return flat.block();
}
