// Sequences: new ones out of the blocks of old ones, without copying samples.
#include "VornWaveSequence.h"

namespace {

constexpr std::int32_t kLastPosition = 32767;  // slices count blocks in 16 bits

}  // namespace

VornWaveSequence::Pointer VornWaveSequence::sequenceByAppendingBlock(
    std::shared_ptr<VornWaveBlock> block) const {
    Blocks blocks;
    blocks.reserve(m_blocks.size() + 1);
    blocks = m_blocks;
    blocks.push_back(std::move(block));
    return sequenceWithBlocks(std::move(blocks), m_myAudioDescription, m_extractType);
}

VornWaveSequence::Pointer VornWaveSequence::sequenceByAppendingSequence(
    const VornWaveSequence& other) const {
    Blocks blocks;
    blocks.reserve(m_blocks.size() + other.m_blocks.size());
    blocks = m_blocks;
    blocks.insert(blocks.end(), other.m_blocks.begin(), other.m_blocks.end());
    return sequenceWithBlocks(std::move(blocks), m_myAudioDescription, m_extractType);
}

VornWaveSequence::Pointer VornWaveSequence::sequenceBySlicingChannel(std::uint32_t channel) const {
    auto sliced = sequenceWithSourceSequence(*this);
    sliced->setExtractType(channel == 0 ? ExtractType::second : ExtractType::first);
    return sliced;
}

std::shared_ptr<WaveAccess> VornWaveSequence::sliceBlockFrom(std::uint32_t from,
                                                             std::uint32_t count) const {
    return sliceFrom(from, count);
}

VornWaveSequence::Pointer VornWaveSequence::sliceFrom(std::uint32_t from,
                                                      std::uint32_t count) const {
    std::uint32_t offset = from;
    const std::int32_t position = getBlockIndexForDataIndex(&offset);
    if (position < 0 || position > kLastPosition)
        return nullptr;
    Blocks blocks;
    for (auto at = static_cast<std::size_t>(position); at < m_blocks.size() && count > 0; ++at) {
        blocks.push_back(m_blocks[at]->slice(offset, count));
        count -= blocks.back()->frameCount();
        offset = 0;
    }
    return sequenceWithBlocks(std::move(blocks), m_myAudioDescription, m_extractType);
}
