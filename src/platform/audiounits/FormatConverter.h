#pragma once

#include <memory>

#include "audiounits/StreamUnit.h"

/// Turns one stream into another: sample format, channels and rate. One channel is heard on both of
/// a stereo output; two become their mean in a mono one. At a rate of its own the upstream is asked
/// for whole chunks, with time stamps at its rate.
class FormatConverter final : public StreamUnit {
  public:
    FormatConverter();
    ~FormatConverter() override;

    /// Fails where the rates are too far apart or no rate converter is installed.
    OSStatus initialise() override;
    OSStatus uninitialise() override;
    OSStatus render(AudioUnitRenderActionFlags* flags, const AudioTimeStamp* time,
                    std::uint32_t bus, std::uint32_t frames, AudioBufferList* data) override;

  private:
    class Workspace;

    std::unique_ptr<Workspace> m_workspace;  // set while initialised
};
