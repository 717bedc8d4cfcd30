#pragma once

#include <memory>
#include <vector>

#include "audiounits/StreamUnit.h"

/// Sums any number of input buses, each in the stream format set on it, into one output bus, with
/// saturation. All run at the graph's rate. A mono bus is heard on every output channel; a stereo
/// bus in a mono output is the mean of its channels. A single 16-bit mono bus passes bit for bit.
class MultichannelMixer final : public StreamUnit {
  public:
    OSStatus setProperty(AudioUnitPropertyID property, AudioUnitScope scope,
                         AudioUnitElement element, const void* data, std::uint32_t size) override;
    OSStatus initialise() override;
    OSStatus uninitialise() override;
    OSStatus render(AudioUnitRenderActionFlags* flags, const AudioTimeStamp* time,
                    std::uint32_t bus, std::uint32_t frames, AudioBufferList* data) override;

  private:
    struct Workspace;  // what a render needs, allocated at initialise

    bool takes(const StreamDescription& format) const override;
    OSStatus setBusCount(AudioUnitScope scope, const void* data, std::uint32_t size);
    bool passThrough(const InputBuses::Table& buses, AudioUnitRenderActionFlags* flags,
                     const AudioTimeStamp* time, std::uint32_t frames,
                     AudioBufferList* data) const noexcept;
    void mix(const InputBuses::Table& buses, AudioUnitRenderActionFlags* flags,
             const AudioTimeStamp* time, std::uint32_t frames, AudioBufferList* data) noexcept;
    bool addBus(const InputBus& bus, AudioUnitElement element, const AudioTimeStamp* time,
                std::uint32_t frames) noexcept;

    std::shared_ptr<Workspace> m_workspace;  // set while initialised
};
