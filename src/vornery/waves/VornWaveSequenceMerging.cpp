// Sequences: stereo from two of one channel.
#include <algorithm>

#include "ChannelCopy.h"
#include "VornWave2.h"
#include "VornWaveSequence.h"

namespace {

constexpr auto kMono = static_cast<std::int32_t>(WaveFormat::mono);
constexpr auto kOneOfStereo = static_cast<std::int32_t>(WaveFormat::oneOfStereo);

/// The windows of one side, taken from the front in pieces of any length.
class Side {
  public:
    explicit Side(const VornWaveSequence& sequence) {
        std::uint32_t count = sequence.sampleCount();
        m_list = sequence.retrieveWindowsAt(0, &count);
        m_window = m_list.get();
    }

    bool exhausted() const { return !m_window || !m_window->data; }
    /// Left of the present window.
    std::uint32_t frames() const { return m_window->frameCount; }
    const float* data() const { return m_window->data; }
    std::size_t stride() const { return isOneOfStereo() ? 2 : 1; }
    bool isOneOfStereo() const { return m_window->format == kOneOfStereo; }

    /// The next `frames` frames of what the window lies in, with all its channels: the very block
    /// where they are the whole of it.
    std::shared_ptr<VornWaveBlock> source(std::uint32_t frames) const {
        const auto* block = static_cast<const VornWaveBlock*>(m_window->owner);
        if (m_offset > 0 || frames < block->frameCount())
            return block->slice(m_offset, frames);
        return std::const_pointer_cast<VornWaveBlock>(block->shared_from_this());
    }

    void take(std::uint32_t frames) {
        m_window->data += (m_window->format == kMono ? 1 : 2) * std::size_t{frames};
        m_window->frameCount -= frames;
        m_offset += frames;
        if (m_window->frameCount == 0)
            next();
    }

  private:
    /// Long silence comes in several windows, every wave in one.
    void next() {
        const auto* block = static_cast<const VornWaveBlock*>(m_window->owner);
        ++m_window;
        const bool goesOn = block->isSilence() && m_window->owner == block;
        if (!goesOn || m_offset >= block->frameCount())
            m_offset = 0;
    }

    WaveWindowList m_list;
    WaveWindow* m_window;
    std::uint32_t m_offset = 0;  // of the window's present start in its block
};

StreamDescription stereoOf(StreamDescription description) {
    description.mChannelsPerFrame = 2;
    description.mBytesPerFrame = description.mBytesPerPacket = description.mBitsPerChannel / 4;
    return description;
}

/// Both channels of the same frames of one stereo sound.
bool areOneSound(const Side& left, const Side& right) {
    return left.isOneOfStereo() && right.isOneOfStereo() && left.data() + 1 == right.data();
}

}  // namespace

VornWaveSequence::Pointer VornWaveSequence::sequenceByMergingMonoSequenceLeft(
    const VornWaveSequence& leftSequence, const VornWaveSequence& rightSequence,
    const std::string& folder) {
    const StreamDescription description = stereoOf(leftSequence.m_myAudioDescription);
    Side left(leftSequence), right(rightSequence);
    Blocks blocks;
    // Fills `frames` frames of a new wave, unless there is no memory for it.
    const auto addMerged = [&](std::uint32_t frames, auto fill) {
        const auto wave = VornWave2::mutableWaveOfLength(frames, description, "Merged", folder);
        fill(wave->sampleCount(), wave->mutableData());
        blocks.push_back(VornWaveBlock::blockWithWave(wave));
    };
    // Left's first samples beside right's second ones; the other way round a neighbouring frame's
    // sample may lie next, too.
    const bool inOrder = leftSequence.m_extractType == ExtractType::first;
    while (!left.exhausted() && !right.exhausted()) {
        const std::uint32_t paired = std::min(left.frames(), right.frames());
        if (inOrder && areOneSound(left, right))
            blocks.push_back(left.source(paired));
        else
            addMerged(paired, [&](std::uint32_t frames, float* into) {
                ChannelCopy::interleave(left.data(), left.stride(), right.data(), right.stride(),
                                        frames, into);
            });
        left.take(paired);
        right.take(paired);
    }
    // Only one window of the longer side is taken along.
    if (!left.exhausted() || !right.exhausted()) {
        const Side& rest = left.exhausted() ? right : left;
        addMerged(rest.frames(), [&](std::uint32_t frames, float* into) {
            ChannelCopy::spread(rest.data(), rest.stride(), frames,
                                into + (&rest == &right && frames > 0 ? 1 : 0));
        });
    }
    return sequenceWithBlocks(std::move(blocks), description, ExtractType::all);
}
