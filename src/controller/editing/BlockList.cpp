#include "editing/BlockList.h"

#include <algorithm>

namespace {

std::uint64_t endOf(const VornWaveBlock& block) {
    return std::uint64_t{block.startIndex()} + block.frameCount();
}

bool continues(const VornWaveBlock& first, const VornWaveBlock& next) {
    if (first.waveOrNil() != next.waveOrNil())
        return false;
    if (first.hasWave())
        return endOf(first) == next.startIndex();
    return first.floatsPerFrame() == next.floatsPerFrame() &&
           first.silenceFolder() == next.silenceFolder();
}

std::shared_ptr<VornWaveBlock> joined(const VornWaveBlock& first, const VornWaveBlock& next) {
    const std::uint32_t frames = first.frameCount() + next.frameCount();
    return first.hasWave()
               ? VornWaveBlock::blockWithWave(first.waveOrNil(), first.startIndex(), frames)
               : VornWaveBlock::blockOfSilenceLength(frames, first.floatsPerFrame(),
                                                     first.silenceFolder());
}

}  // namespace

void BlockList::add(std::shared_ptr<VornWaveBlock> block) {
    if (block->frameCount() == 0)
        return;
    if (!m_blocks.empty() && continues(*m_blocks.back(), *block))
        m_blocks.back() = joined(*m_blocks.back(), *block);
    else
        m_blocks.push_back(std::move(block));
}

void BlockList::add(const VornWaveSequence& sound, const EditSpan& span) {
    std::uint32_t offset = span.from;
    const std::int32_t first = sound.getBlockIndexForDataIndex(&offset);
    if (first < 0)
        return;
    const VornWaveSequence::Blocks& blocks = sound.blocks();
    std::uint32_t wanted = span.frames();
    for (auto at = static_cast<std::size_t>(first); wanted > 0 && at < blocks.size(); ++at) {
        const auto& block = blocks[at];
        const std::uint32_t frames = std::min(wanted, block->frameCount() - offset);
        add(frames == block->frameCount() ? block : block->slice(offset, frames));
        wanted -= frames;
        offset = 0;
    }
}
