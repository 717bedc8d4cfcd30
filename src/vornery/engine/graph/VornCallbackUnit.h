#pragma once

#include "graph/VornUnit.h"

/// A unit whose audio comes from a render function of our own. A subclass passes that function to
/// the constructor; it is called with the unit as its context, pulls its upstream into the buffer
/// it was given, and works on it in place. A source has no upstream and writes the buffer itself.
class VornCallbackUnit : public VornUnit {
  public:
    VornCallbackUnit(AURenderCallback render, const StreamDescription& format);

    const AURenderCallbackStruct* callback() const override { return &m_callbackData; }
    const StreamDescription* outputFormat() const override { return &m_streamDescription; }

    using VornUnit::setUpstreamUnit;
    void setUpstreamUnit(VornUnit& upstream, std::uint32_t outBus, std::uint32_t inBus) override;
    void disconnectUpstream(std::uint32_t bus) override;

    /// [render] Fills `into` from the upstream unit and returns its status. A unit that was never
    /// connected has nothing to pull and answers "no connection".
    OSStatus upstreamRenderFlags(AudioUnitRenderActionFlags* flags, const AudioTimeStamp* time,
                                 std::uint32_t bus, std::uint32_t frameCount,
                                 AudioBufferList* into) const noexcept {
        if (m_sourceComponent.sourceAudioUnit)
            return renderComponent(flags, time, bus, frameCount, into);
        if (!m_sourceCallback.inputProc)
            return kAudioUnitErr_NoConnection;
        return m_sourceCallback.inputProc(m_sourceCallback.inputProcRefCon, flags, time, bus,
                                          frameCount, into);
    }

    /// The upstream's platform instance, or null, and the two bus numbers.
    const AudioUnitConnection* source() const { return &m_sourceComponent; }

  private:
    OSStatus renderComponent(AudioUnitRenderActionFlags* flags, const AudioTimeStamp* time,
                             std::uint32_t bus, std::uint32_t frameCount,
                             AudioBufferList* into) const noexcept;

    AudioUnitConnection m_sourceComponent;
    AURenderCallbackStruct m_sourceCallback;

  protected:
    StreamDescription m_streamDescription;
    AURenderCallbackStruct m_callbackData;  // the context may be a record in place of the unit
};
