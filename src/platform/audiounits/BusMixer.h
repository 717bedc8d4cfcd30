#pragma once

#include <array>
#include <memory>

#include "audiounits/StreamConversion.h"
#include "audiounits/StreamUnit.h"
#include "audiounits/devices/AudioDevice.h"

/// What mixers have in common: any number of input buses (at most kMaximumBuses), each in the
/// stream format set on it, all at the graph's rate, end in one output bus, with saturation.
class BusMixer : public StreamUnit {
  public:
    static constexpr std::uint32_t kMaximumBuses = 1024;

    OSStatus setProperty(AudioUnitPropertyID property, AudioUnitScope scope,
                         AudioUnitElement element, const void* data, std::uint32_t size) override;
    OSStatus initialise() override;
    OSStatus uninitialise() override;
    OSStatus render(AudioUnitRenderActionFlags* flags, const AudioTimeStamp* time,
                    std::uint32_t bus, std::uint32_t frames, AudioBufferList* data) override;

  protected:
    /// What a render needs, allocated at initialise.
    struct Workspace {
        StreamScratch scratch{kMaximumDeviceFrames};
        std::array<std::array<float, kMaximumDeviceFrames>, 2> sums;
        std::array<float, kMaximumDeviceFrames> channel;  // room for one channel of a bus
    };
    /// The frames that came from one bus, in its own format.
    struct Pulled {
        AudioUnitElement element;
        const StreamDescription& format;
        const AudioBufferList& list;
        std::uint32_t frames;
    };

    /// [render] Adds the bus to both sums. A mono output becomes their mean.
    virtual void add(const Pulled& bus, Workspace& workspace) noexcept = 0;
    /// [render] Whether add would leave the samples of a mono bus as they are. Then the only bus in
    /// a mixer of the same format passes bit for bit.
    virtual bool leavesAlone(AudioUnitElement element) noexcept = 0;

  private:
    bool takes(const StreamDescription& format) const override;
    OSStatus setBusCount(AudioUnitScope scope, const void* data, std::uint32_t size);
    bool passThrough(const InputBuses::Table& buses, AudioUnitRenderActionFlags* flags,
                     const AudioTimeStamp* time, std::uint32_t frames,
                     AudioBufferList* data) noexcept;
    void mix(const InputBuses::Table& buses, AudioUnitRenderActionFlags* flags,
             const AudioTimeStamp* time, std::uint32_t frames, AudioBufferList* data) noexcept;
    bool addBus(const InputBus& bus, AudioUnitElement element, const AudioTimeStamp* time,
                std::uint32_t frames) noexcept;

    std::unique_ptr<Workspace> m_workspace;  // set while initialised
};
