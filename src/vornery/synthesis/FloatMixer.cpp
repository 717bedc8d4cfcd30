#include "FloatMixer.h"

#include <algorithm>

#include "PullUpstream.h"
#include "audiounits/AudioUnit.h"

namespace {

void add(float* __restrict sum, const float* __restrict addend, std::uint32_t frames) {
    for (std::uint32_t k = 0; k < frames; ++k)
        sum[k] += addend[k];
}

// All that added zeros could have changed: -0 becomes 0.
void addZero(float* sum, std::uint32_t frames) {
    for (std::uint32_t k = 0; k < frames; ++k)
        sum[k] += 0.f;
}

}  // namespace

FloatMixer::FloatMixer()
    : VornCallbackUnit(&render, StreamDescription::float32(1)),
      m_mixdownBuffer(std::make_unique<float[]>(kFirstSize)) {}

void FloatMixer::setUpstreamUnit(VornUnit& upstream, std::uint32_t outBus, std::uint32_t inBus) {
    if (inBus >= kBuses)
        return;
    m_sourceComponents[inBus] = {upstream.unit(), outBus, inBus};
    if (!upstream.unit() && upstream.callback())
        m_sourceCallbacks[inBus] = *upstream.callback();
    m_busesInUse = std::max(m_busesInUse, inBus + 1);
}

void FloatMixer::disconnectUpstream(std::uint32_t bus) {
    if (bus >= kBuses)
        return;
    m_sourceComponents[bus] = {};
    m_sourceCallbacks[bus] = {};
}

OSStatus FloatMixer::upstreamRenderFlags(AudioUnitRenderActionFlags* flags,
                                         const AudioTimeStamp* time, std::uint32_t myBus,
                                         std::uint32_t frameCount,
                                         AudioBufferList* into) const noexcept {
    if (myBus >= kBuses)
        return kAudioUnitErr_NoConnection;
    const AudioUnitConnection& component = m_sourceComponents[myBus];
    const AURenderCallbackStruct& callback = m_sourceCallbacks[myBus];
    if (component.sourceAudioUnit)
        return AudioUnitRender(component.sourceAudioUnit, flags, time, component.sourceOutputNumber,
                               frameCount, into);
    if (!callback.inputProc)
        return kAudioUnitErr_NoConnection;
    return callback.inputProc(callback.inputProcRefCon, flags, time, component.sourceOutputNumber,
                              frameCount, into);
}

void FloatMixer::setMixdownSize(std::uint32_t frames) {
    if (frames > m_capacity) {
        m_mixdownBuffer.reset();
        m_mixdownBuffer = std::make_unique<float[]>(frames);
        m_capacity = frames;
    }
    m_mixdownSize = frames;
}

void FloatMixer::mix(AudioUnitRenderActionFlags* flags, const AudioTimeStamp* time,
                     std::uint32_t frames, AudioBufferList* data) noexcept {
    AudioBufferList scratch =
        AudioBufferList::single(m_mixdownBuffer.get(), 1, frames * std::uint32_t{sizeof(float)});
    float* sum = data->samples<float>();
    const AudioUnitRenderActionFlags asked =
        flags ? *flags & ~kAudioUnitRenderAction_OutputIsSilence : 0;
    bool begun = false;
    bool sounds = false;      // something that is not silence is in the sum
    bool addedZeros = false;  // silence that was left out
    for (std::uint32_t bus = 0; bus < m_busesInUse; ++bus) {
        AudioUnitRenderActionFlags busFlags = asked;
        if (upstreamRenderFlags(&busFlags, time, bus, frames, begun ? &scratch : data) != noErr)
            continue;
        const bool silent = (busFlags & kAudioUnitRenderAction_OutputIsSilence) != 0;
        if (begun && !silent)
            add(sum, m_mixdownBuffer.get(), frames);
        addedZeros |= begun && silent;
        sounds |= !silent;
        begun = true;
    }
    if (sounds && addedZeros)
        addZero(sum, frames);
    markSilence(flags, begun && !sounds);
}

OSStatus FloatMixer::render(void* context, AudioUnitRenderActionFlags* flags,
                            const AudioTimeStamp* time, std::uint32_t, std::uint32_t frames,
                            AudioBufferList* data) {
    auto& unit = *static_cast<FloatMixer*>(context);
    if (unit.m_mixdownSize < frames)
        unit.setMixdownSize(frames);
    unit.mix(flags, time, frames, data);
    return noErr;
}
