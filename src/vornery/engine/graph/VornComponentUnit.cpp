#include "graph/VornComponentUnit.h"

#include "graph/PlatformProperty.h"

VornComponentUnit::VornComponentUnit(std::shared_ptr<VornUnitDescription> description)
    : m_description(std::move(description)) {
    Log::status(AudioComponentInstanceNew(m_description->component(), &m_component));
}

VornComponentUnit::~VornComponentUnit() {
    VornComponentUnit::uninitialise();
    Log::status(AudioComponentInstanceDispose(m_component));
}

void VornComponentUnit::setUpstreamUnit(VornUnit& upstream, std::uint32_t outBus,
                                        std::uint32_t inBus) {
    if (upstream.unit()) {
        const AudioUnitConnection connection{upstream.unit(), outBus, inBus};
        PlatformProperty::set(m_component, kAudioUnitProperty_MakeConnection, kAudioUnitScope_Input,
                              inBus, connection);
        return;
    }
    // A unit that has neither instance nor render function is a bad argument, which is logged.
    Log::status(AudioUnitSetProperty(m_component, kAudioUnitProperty_StreamFormat,
                                     kAudioUnitScope_Input, inBus, upstream.outputFormat(),
                                     sizeof(StreamDescription)));
    Log::status(AudioUnitSetProperty(m_component, kAudioUnitProperty_SetRenderCallback,
                                     kAudioUnitScope_Input, inBus, upstream.callback(),
                                     sizeof(AURenderCallbackStruct)));
}

void VornComponentUnit::disconnectUpstream(std::uint32_t bus) {
    PlatformProperty::set(m_component, kAudioUnitProperty_MakeConnection, kAudioUnitScope_Input,
                          bus, AudioUnitConnection{nullptr, 0, bus});
    PlatformProperty::set(m_component, kAudioUnitProperty_SetRenderCallback, kAudioUnitScope_Input,
                          bus, AURenderCallbackStruct{});
}

void VornComponentUnit::initialise() {
    if (m_initialised)
        return;
    Log::status(AudioUnitInitialize(m_component));
    VornUnit::initialise();
}

void VornComponentUnit::uninitialise() {
    Log::status(AudioUnitUninitialize(m_component));
    VornUnit::uninitialise();
}
