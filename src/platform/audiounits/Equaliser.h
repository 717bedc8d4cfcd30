#pragma once

#include <atomic>
#include <memory>

#include "audiounits/StreamUnit.h"

/// Ten bands from 32 Hz to 16 kHz, set by factory preset. One bus in, one out, both in one format
/// at the graph's rate: setting either sets both, and a connection brings its source's. Flat, the
/// first preset, hands every sample on as it is. Boosted 16-bit sound saturates. Another preset is
/// reached smoothly, from the next render on.
///
/// Preset records hold a string, so both preset properties (global scope) pass a pointer to where
/// the value is: to a std::vector<AUPreset> for the factory presets, to an AUPreset for the present
/// one. Written, its number counts and the name is the table's.
class Equaliser final : public StreamUnit {
  public:
    Equaliser();
    ~Equaliser() override;

    OSStatus setProperty(AudioUnitPropertyID property, AudioUnitScope scope,
                         AudioUnitElement element, const void* data, std::uint32_t size) override;
    OSStatus propertyInfo(AudioUnitPropertyID property, AudioUnitScope scope,
                          AudioUnitElement element, std::uint32_t* size) override;
    OSStatus property(AudioUnitPropertyID property, AudioUnitScope scope, AudioUnitElement element,
                      void* data, std::uint32_t* size) override;
    OSStatus initialise() override;
    OSStatus uninitialise() override;
    OSStatus render(AudioUnitRenderActionFlags* flags, const AudioTimeStamp* time,
                    std::uint32_t bus, std::uint32_t frames, AudioBufferList* data) override;

  private:
    struct Workspace;  // what a render needs, allocated at initialise

    bool takes(const StreamDescription& format) const override;
    OSStatus setFormat(AudioUnitScope scope, AudioUnitElement element, const void* data,
                       std::uint32_t size);
    OSStatus setPreset(const void* data, std::uint32_t size);

    std::atomic<std::size_t> m_preset{0};    // number
    std::unique_ptr<Workspace> m_workspace;  // set while initialised
};
