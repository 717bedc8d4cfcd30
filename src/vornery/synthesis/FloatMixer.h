#pragma once

#include <array>
#include <memory>

#include "graph/VornCallbackUnit.h"

/// Sums up to 128 mono float inputs into one. Inputs that fail are left out.
class FloatMixer : public VornCallbackUnit {
  public:
    static constexpr std::uint32_t kBuses = 128;

    FloatMixer();

    using VornCallbackUnit::setUpstreamUnit;
    /// `inBus` is below 128; others are ignored.
    void setUpstreamUnit(VornUnit& upstream, std::uint32_t outBus, std::uint32_t inBus) override;
    void disconnectUpstream(std::uint32_t bus) override;

    /// [render] Fills `into` from what input bus `myBus` is connected to, or answers "no
    /// connection".
    OSStatus upstreamRenderFlags(AudioUnitRenderActionFlags* flags, const AudioTimeStamp* time,
                                 std::uint32_t myBus, std::uint32_t frameCount,
                                 AudioBufferList* into) const noexcept;

    /// Frames that one render can mix without growing.
    std::uint32_t mixdownSize() const { return m_mixdownSize; }
    /// A larger size gets new memory, without the old contents. [control], or a render that is
    /// asked for more than was ever announced.
    void setMixdownSize(std::uint32_t frames);
    float* mixdownBuffer() const { return m_mixdownBuffer.get(); }

  private:
    static constexpr std::uint32_t kFirstSize = 512;

    static OSStatus render(void* unit, AudioUnitRenderActionFlags* flags,
                           const AudioTimeStamp* time, std::uint32_t bus, std::uint32_t frames,
                           AudioBufferList* data);
    void mix(AudioUnitRenderActionFlags* flags, const AudioTimeStamp* time, std::uint32_t frames,
             AudioBufferList* data) noexcept;

    std::array<AudioUnitConnection, kBuses> m_sourceComponents{};
    std::array<AURenderCallbackStruct, kBuses> m_sourceCallbacks{};
    std::unique_ptr<float[]> m_mixdownBuffer;
    std::uint32_t m_mixdownSize = kFirstSize;
    std::uint32_t m_capacity = kFirstSize;  // of m_mixdownBuffer
    std::uint32_t m_busesInUse = 0;         // no bus from here on is connected
};
