#pragma once

#include <algorithm>
#include <vector>

#include "WaveAccess.h"

/// A sound in memory.
class VectorWave : public ContiguousWave {
  public:
    explicit VectorWave(std::vector<float> samples) : m_samples(std::move(samples)) {}

    std::uint32_t sampleCount() const override {
        return static_cast<std::uint32_t>(m_samples.size());
    }
    const StreamDescription* audioDescription() const override { return &m_description; }
    WaveWindowList retrieveWindowsAt(std::uint32_t, std::uint32_t*) const override { return {}; }
    std::uint32_t write(std::uint32_t, float*) const override { return 0; }
    std::shared_ptr<WaveAccess> sliceBlockFrom(std::uint32_t, std::uint32_t) const override {
        return {};
    }
    const float* retrieveWindowAt(std::uint32_t at, std::uint32_t* count,
                                  std::int32_t*) const override {
        *count = std::min(*count, sampleCount() - at);
        return m_samples.data() + at;
    }

    const std::vector<float>& samples() const { return m_samples; }

  private:
    std::vector<float> m_samples;
    StreamDescription m_description = StreamDescription::float32(1);
};
