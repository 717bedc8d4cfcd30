#pragma once

#include "audiounits/AudioUnit.h"
#include "audiounits/InputBuses.h"

/// A component that turns any number of input buses into one output bus: what such units answer
/// alike about formats, connections and the number of buses.
class StreamUnit : public AudioUnitInstance {
  public:
    OSStatus setProperty(AudioUnitPropertyID property, AudioUnitScope scope,
                         AudioUnitElement element, const void* data, std::uint32_t size) override;
    OSStatus propertyInfo(AudioUnitPropertyID property, AudioUnitScope scope,
                          AudioUnitElement element, std::uint32_t* size) override;
    OSStatus property(AudioUnitPropertyID property, AudioUnitScope scope, AudioUnitElement element,
                      void* data, std::uint32_t* size) override;

  protected:
    /// Whether a stream of that format can come in or go out here.
    virtual bool takes(const StreamDescription& format) const;
    /// Whether the render's arguments are in order, for a unit that is initialised or not.
    static OSStatus checkRender(bool initialised, std::uint32_t bus, std::uint32_t frames);

    InputBuses m_inputs{1};
    StreamDescription m_output = StreamDescription::sint16(1);

  private:
    OSStatus setFormat(AudioUnitScope scope, AudioUnitElement element, const void* data,
                       std::uint32_t size);
};
