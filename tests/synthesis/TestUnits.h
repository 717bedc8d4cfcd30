#pragma once

#include <algorithm>
#include <functional>
#include <vector>

#include "Dice.h"
#include "VectorWave.h"
#include "audiounits/RenderScope.h"
#include "graph/VornCallbackUnit.h"

/// A source whose next buffers are set by the test; it says silence when all of one is zero.
class BufferSource : public VornCallbackUnit {
  public:
    BufferSource() : VornCallbackUnit(&render, StreamDescription::float32(1)) {}

    std::vector<float> samples;  // of the next render, as many as it asks for
    OSStatus status = noErr;
    std::uint32_t busSeen = 0;
    std::function<void()> whileRendering;

  private:
    static OSStatus render(void* context, AudioUnitRenderActionFlags* flags, const AudioTimeStamp*,
                           std::uint32_t bus, std::uint32_t frames, AudioBufferList* data) {
        auto& source = *static_cast<BufferSource*>(context);
        source.busSeen = bus;
        if (source.whileRendering)
            source.whileRendering();
        if (source.status != noErr)
            return source.status;
        std::copy_n(source.samples.begin(), frames, data->samples<float>());
        if (std::ranges::all_of(source.samples, [](float x) { return x == 0.f; }))
            *flags |= kAudioUnitRenderAction_OutputIsSilence;
        return noErr;
    }
};

/// One render as a device would ask for it.
template <typename Sample>
std::vector<Sample> renderUnit(const VornUnit& unit, std::uint32_t frames, bool* silent = nullptr) {
    std::vector<Sample> out(frames, Sample(77));
    AudioBufferList list =
        AudioBufferList::single(out.data(), 1, frames * static_cast<std::uint32_t>(sizeof(Sample)));
    AudioUnitRenderActionFlags flags = 0;
    const AudioTimeStamp time;
    RenderScope scope;
    unit.callback()->inputProc(unit.callback()->inputProcRefCon, &flags, &time, 0, frames, &list);
    if (silent)
        *silent = (flags & kAudioUnitRenderAction_OutputIsSilence) != 0;
    return out;
}

/// Computes a model as a render would: with denormals flushed.
template <typename Function>
void inRender(Function function) {
    RenderScope scope;
    function();
}

inline constexpr std::uint32_t kBufferSizes[] = {1, 7, 64, 441, 512, 1023, 8192};
