#include "graph/VornCallbackUnit.h"

#include "audiounits/AudioUnit.h"

VornCallbackUnit::VornCallbackUnit(AURenderCallback render, const StreamDescription& format)
    : m_streamDescription(format), m_callbackData{render, this} {}

void VornCallbackUnit::setUpstreamUnit(VornUnit& upstream, std::uint32_t outBus,
                                       std::uint32_t inBus) {
    m_sourceComponent = {upstream.unit(), outBus, inBus};
    // A component upstream leaves the stored callback as it was: the component comes first.
    if (!upstream.unit() && upstream.callback())
        m_sourceCallback = *upstream.callback();
}

void VornCallbackUnit::disconnectUpstream(std::uint32_t) {
    m_sourceCallback = {};
    m_sourceComponent = {};
}

OSStatus VornCallbackUnit::renderComponent(AudioUnitRenderActionFlags* flags,
                                           const AudioTimeStamp* time, std::uint32_t bus,
                                           std::uint32_t frameCount,
                                           AudioBufferList* into) const noexcept {
    return AudioUnitRender(m_sourceComponent.sourceAudioUnit, flags, time, bus, frameCount, into);
}
