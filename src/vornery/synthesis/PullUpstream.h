#pragma once

#include "graph/VornCallbackUnit.h"
#include "log/Log.h"

/// [render] Fills `into` from the unit's upstream, on the upstream's output bus that the unit is
/// connected to. A failure is logged and the buffer stays as it was. True when the upstream says
/// that it wrote nothing but zeros; `*flags` says the same. Whoever does not want to know passes
/// null.
inline bool pullUpstream(const VornCallbackUnit& unit, AudioUnitRenderActionFlags* flags,
                         const AudioTimeStamp* time, std::uint32_t frames, AudioBufferList* into) {
    AudioUnitRenderActionFlags own = 0;
    if (!flags)
        flags = &own;
    *flags &= ~kAudioUnitRenderAction_OutputIsSilence;
    const OSStatus status =
        unit.upstreamRenderFlags(flags, time, unit.source()->sourceOutputNumber, frames, into);
    if (status != noErr) {
        Log::status(status);
        *flags &= ~kAudioUnitRenderAction_OutputIsSilence;
    }
    return (*flags & kAudioUnitRenderAction_OutputIsSilence) != 0;
}

/// [render] Says whether the buffer that a unit has filled holds nothing but zeros.
inline void markSilence(AudioUnitRenderActionFlags* flags, bool silent) {
    if (!flags)
        return;
    *flags = silent ? *flags | kAudioUnitRenderAction_OutputIsSilence
                    : *flags & ~kAudioUnitRenderAction_OutputIsSilence;
}
