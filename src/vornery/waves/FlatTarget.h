#pragma once

#include <algorithm>
#include <cstdint>
#include <memory>
#include <string>

#include "VornWave2.h"
#include "VornWaveBlock.h"

/// A new wave in memory that is filled from the front, never past its end. One that cannot be had
/// has no room. [main]
class FlatTarget {
  public:
    FlatTarget(std::uint32_t frames, const StreamDescription& description, const std::string& hint,
               const std::string& folder)
        : m_wave(VornWave2::mutableWaveOfLength(frames, description, hint, folder)),
          m_data(m_wave->mutableData()),
          m_floats(std::size_t{m_wave->sampleCount()} * description.mChannelsPerFrame) {}

    const std::shared_ptr<VornWave2>& wave() const { return m_wave; }
    /// The whole wave.
    std::shared_ptr<VornWaveBlock> block() const { return VornWaveBlock::blockWithWave(m_wave); }
    /// Where the next float goes.
    float* data() const { return m_data; }
    /// How many of `frames` frames of `floatsPerFrame` floats there is room for.
    std::uint32_t room(std::uint32_t frames, std::uint32_t floatsPerFrame) const {
        return static_cast<std::uint32_t>(
            std::min<std::size_t>(frames, m_floats / std::max(floatsPerFrame, 1u)));
    }
    void advance(std::size_t floats) {
        floats = std::min(floats, m_floats);
        m_data += floats;
        m_floats -= floats;
    }

  private:
    std::shared_ptr<VornWave2> m_wave;
    float* m_data;
    std::size_t m_floats;
};
