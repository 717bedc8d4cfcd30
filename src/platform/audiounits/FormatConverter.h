#pragma once

#include <memory>

#include "audiounits/AudioUnit.h"
#include "audiounits/InputBuses.h"
#include "audiounits/StreamConversion.h"

/// Turns one stream into another: sample format, channels and rate. One channel is heard on both of
/// a stereo output; two become their mean in a mono one. At a rate of its own the upstream is asked
/// for whole chunks, with time stamps at its rate.
class FormatConverter final : public AudioUnitInstance {
  public:
    FormatConverter();
    ~FormatConverter() override;

    OSStatus setProperty(AudioUnitPropertyID property, AudioUnitScope scope,
                         AudioUnitElement element, const void* data, std::uint32_t size) override;
    OSStatus propertyInfo(AudioUnitPropertyID property, AudioUnitScope scope,
                          AudioUnitElement element, std::uint32_t* size) override;
    OSStatus property(AudioUnitPropertyID property, AudioUnitScope scope, AudioUnitElement element,
                      void* data, std::uint32_t* size) override;
    /// Fails where the rates are too far apart or no rate converter is installed.
    OSStatus initialise() override;
    OSStatus uninitialise() override;
    OSStatus render(AudioUnitRenderActionFlags* flags, const AudioTimeStamp* time,
                    std::uint32_t bus, std::uint32_t frames, AudioBufferList* data) override;

  private:
    class Workspace;

    InputBuses m_inputs{1};
    StreamDescription m_output = StreamDescription::sint16(1);
    std::unique_ptr<Workspace> m_workspace;  // set while initialised
};
