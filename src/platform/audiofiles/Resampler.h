#pragma once

#include <cstdint>
#include <vector>

struct SwrContext;
struct ResampleFunctions;

/// Change of rate, channel by channel, by libswresample with its default options. Gives
/// ceil(input frames x ratio) frames once flushed, without a shift in time; next to nothing for
/// inputs shorter than its filter.
class Resampler {
  public:
    /// Rates in frames per second, `channels` 1 or 2. Check `valid` before use.
    Resampler(int inputRate, int outputRate, int channels);
    ~Resampler();
    Resampler(const Resampler&) = delete;
    Resampler& operator=(const Resampler&) = delete;

    static bool available();
    bool valid() const { return m_context != nullptr; }

    /// Appends nothing: replaces the contents of `output` (one vector a channel, grown as needed)
    /// and returns the frames written there.
    std::uint32_t process(const std::vector<float>* input, std::uint32_t frames,
                          std::vector<float>* output);
    /// The same for what is still inside; 0 when all is out.
    std::uint32_t flush(std::vector<float>* output);

  private:
    std::uint32_t convert(const std::uint8_t** input, int frames, std::vector<float>* output);

    const ResampleFunctions* m_swr;
    SwrContext* m_context = nullptr;
    int m_channels;
};
