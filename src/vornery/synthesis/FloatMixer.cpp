#include "FloatMixer.h"

#include <algorithm>

#include "PullUpstream.h"
#include "audiounits/AudioUnit.h"

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
    bool begun = false;
    bool silent = false;
    for (std::uint32_t bus = 0; bus < m_busesInUse; ++bus) {
        AudioUnitRenderActionFlags busFlags = *flags & ~kAudioUnitRenderAction_OutputIsSilence;
        AudioBufferList* into = begun ? &scratch : data;
        if (upstreamRenderFlags(&busFlags, time, bus, frames, into) != noErr)
            continue;
        const bool silentBus = (busFlags & kAudioUnitRenderAction_OutputIsSilence) != 0;
        silent = silentBus && (silent || !begun);
        if (begun) {
            float* sum = data->samples<float>();
            const float* addend = scratch.samples<float>();
            for (std::uint32_t k = 0; k < frames; ++k)
                sum[k] += addend[k];
        }
        begun = true;
    }
    markSilence(flags, silent);
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
