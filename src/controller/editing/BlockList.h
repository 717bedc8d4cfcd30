#pragma once

#include "VornWaveSequence.h"
#include "editing/EditSpan.h"

/// Blocks of a sound in the making. Neighbours that continue each other become one, so that a sound
/// that was cut and put together again is as short a list as before. Copies no samples. [main]
class BlockList {
  public:
    void add(std::shared_ptr<VornWaveBlock> block);
    /// A stretch of a sound, which has it.
    void add(const VornWaveSequence& sound, const EditSpan& span);
    VornWaveSequence::Blocks take() { return std::move(m_blocks); }

  private:
    VornWaveSequence::Blocks m_blocks;
};
