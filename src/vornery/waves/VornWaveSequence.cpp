#include "VornWaveSequence.h"

#include <algorithm>
#include <limits>

#include "VornWave2.h"

VornWaveSequence::VornWaveSequence(Blocks blocks, const StreamDescription& description,
                                   ExtractType extract)
    : m_blocks(std::move(blocks)), m_myAudioDescription(description), m_extractType(extract) {
    m_ends.reserve(m_blocks.size());
    std::uint64_t end = 0;
    for (const auto& block : m_blocks)
        m_ends.push_back(end += block->sampleCount());
}

VornWaveSequence::Pointer VornWaveSequence::initWithBlocks(Blocks blocks,
                                                           const StreamDescription& description,
                                                           ExtractType extract) {
    return Pointer(new VornWaveSequence(std::move(blocks), description, extract));
}

VornWaveSequence::Pointer VornWaveSequence::initWithBlock(std::shared_ptr<VornWaveBlock> block) {
    const StreamDescription description = *block->audioDescription();
    return initWithBlocks({std::move(block)}, description, ExtractType::all);
}

VornWaveSequence::Pointer VornWaveSequence::initWithDescription(
    const StreamDescription& description) {
    return initWithBlocks({}, description, ExtractType::all);
}

VornWaveSequence::Pointer VornWaveSequence::sequenceWithWave(std::shared_ptr<VornWave2> wave) {
    return sequenceWithBlock(VornWaveBlock::blockWithWave(std::move(wave)));
}

VornWaveSequence::Pointer VornWaveSequence::sequenceWithSourceSequence(
    const VornWaveSequence& source) {
    return sequenceWithBlocks(source.m_blocks, source.m_myAudioDescription, ExtractType::all);
}

const StreamDescription* VornWaveSequence::audioDescription() const {
    if (m_extractType == ExtractType::all)
        return &m_myAudioDescription;
    static StreamDescription extracting = m_myAudioDescription;
    extracting.mChannelsPerFrame = 1;
    extracting.mBytesPerFrame = extracting.mBytesPerPacket = extracting.mBitsPerChannel / 8;
    return &extracting;
}

std::uint64_t VornWaveSequence::length() const {
    return m_ends.empty() ? 0 : m_ends.back();
}

std::uint32_t VornWaveSequence::sampleCount() const {
    return static_cast<std::uint32_t>(
        std::min<std::uint64_t>(length(), std::numeric_limits<std::uint32_t>::max()));
}

bool VornWaveSequence::isEntirelySilence() const {
    return std::ranges::all_of(m_blocks, [](const auto& block) { return block->isSilence(); });
}

std::size_t VornWaveSequence::positionOf(std::uint64_t frame) const {
    // The first block that ends behind the frame; blocks without frames never do.
    return static_cast<std::size_t>(std::ranges::upper_bound(m_ends, frame) - m_ends.begin());
}

std::uint64_t VornWaveSequence::startOf(std::size_t position) const {
    return position == 0 ? 0 : m_ends[position - 1];
}

std::int32_t VornWaveSequence::getBlockIndexForDataIndex(std::uint32_t* index) const {
    const std::size_t position = positionOf(*index);
    *index -= static_cast<std::uint32_t>(startOf(position));
    return position < m_blocks.size() ? static_cast<std::int32_t>(position) : -1;
}

std::shared_ptr<VornWaveBlock> VornWaveSequence::getBlockForDataIndex(std::uint32_t* index) const {
    const std::int32_t position = getBlockIndexForDataIndex(index);
    return position < 0 ? nullptr : m_blocks[static_cast<std::size_t>(position)];
}

std::set<std::shared_ptr<VornWave2>> VornWaveSequence::onDiskSourceList() const {
    std::set<std::shared_ptr<VornWave2>> waves;
    for (const auto& block : m_blocks)
        if (block->hasWave())
            waves.insert(block->waveOrNil());
    return waves;
}
