#pragma once

#include <algorithm>
#include <functional>
#include <random>
#include <vector>

#include "WaveAccess.h"
#include "audiounits/RenderScope.h"
#include "graph/VornCallbackUnit.h"

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

/// A source whose next buffers are set by the test; it says silence when all of one is zero.
class BufferSource : public VornCallbackUnit {
  public:
    BufferSource() : VornCallbackUnit(&render, StreamDescription::float32(1)) {}

    std::vector<float> samples;  // of the next render, as many as it asks for
    OSStatus status = noErr;
    std::uint32_t busSeen = 0;
    std::function<void()> whileRendering;

  private:
    static OSStatus render(void* context, AudioUnitRenderActionFlags* flags, const AudioTimeStamp*,
                           std::uint32_t bus, std::uint32_t frames, AudioBufferList* data) {
        auto& source = *static_cast<BufferSource*>(context);
        source.busSeen = bus;
        if (source.whileRendering)
            source.whileRendering();
        if (source.status != noErr)
            return source.status;
        std::copy_n(source.samples.begin(), frames, data->samples<float>());
        if (std::ranges::all_of(source.samples, [](float x) { return x == 0.f; }))
            *flags |= kAudioUnitRenderAction_OutputIsSilence;
        return noErr;
    }
};

/// One render as a device would ask for it.
template <typename Sample>
std::vector<Sample> renderUnit(const VornUnit& unit, std::uint32_t frames, bool* silent = nullptr) {
    std::vector<Sample> out(frames, Sample(77));
    AudioBufferList list =
        AudioBufferList::single(out.data(), 1, frames * static_cast<std::uint32_t>(sizeof(Sample)));
    AudioUnitRenderActionFlags flags = 0;
    const AudioTimeStamp time;
    RenderScope scope;
    unit.callback()->inputProc(unit.callback()->inputProcRefCon, &flags, &time, 0, frames, &list);
    if (silent)
        *silent = (flags & kAudioUnitRenderAction_OutputIsSilence) != 0;
    return out;
}

/// Computes a model as a render would: with denormals flushed.
template <typename Function>
void inRender(Function function) {
    RenderScope scope;
    function();
}

/// Fixed random input.
class Dice {
  public:
    explicit Dice(unsigned seed) : m_engine(seed) {}
    float between(float low, float high) {
        return std::uniform_real_distribution<float>(low, high)(m_engine);
    }
    bool oneIn(int n) { return below(n) == 0; }
    int below(int n) { return std::uniform_int_distribution<int>(0, n - 1)(m_engine); }
    template <typename T, std::size_t N>
    T of(const T (&choices)[N]) {
        return choices[below(static_cast<int>(N))];
    }
    std::vector<float> noise(std::size_t count, float level = 1.f) {
        std::vector<float> samples(count);
        for (float& sample : samples)
            sample = between(-level, level);
        return samples;
    }

  private:
    std::mt19937 m_engine;
};

inline constexpr std::uint32_t kBufferSizes[] = {1, 7, 64, 441, 512, 1023, 8192};
