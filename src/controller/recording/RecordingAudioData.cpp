#include "recording/RecordingAudioData.h"

#include <algorithm>
#include <cstdlib>

#include "log/Log.h"

RecordingAudioData::RecordingAudioData(VornIOUnit& unit)
    : hardware(unit),
      take(kTakeCapacity),
      scratch(std::size_t{kScratchCapacity} * 2),
      takeCapacity(static_cast<std::uint32_t>(take.size())),
      scratchCapacity(kScratchCapacity) {
    take.faultIn();
}

OSStatus RecordingAudioData::input(void* record, AudioUnitRenderActionFlags* flags,
                                   const AudioTimeStamp* time, std::uint32_t bus,
                                   std::uint32_t frames, AudioBufferList*) {
    auto* const data = static_cast<RecordingAudioData*>(record);
    if (!data)
        return noErr;
    const std::uint32_t state = data->state.load(std::memory_order_acquire);
    if (state == stopRequested)
        data->state.store(stopped, std::memory_order_release);
    else if (state != stopped && frames <= data->scratchCapacity)
        data->receive(state == capturing, flags, time, bus, frames);
    return noErr;
}

void RecordingAudioData::receive(bool keep, AudioUnitRenderActionFlags* flags,
                                 const AudioTimeStamp* time, std::uint32_t bus,
                                 std::uint32_t frames) {
    auto list = AudioBufferList::single(scratch.data(), 2, frames * 4);
    Log::status(AudioUnitRender(hardware.unit(), flags, time, bus, frames, &list));
    const std::uint32_t count = sampleCount.load(std::memory_order_relaxed);
    const std::uint32_t room = std::min(frames, takeCapacity - count);
    for (std::uint32_t i = 0; keep && i < room; ++i) {
        const std::int32_t sample = scratch[2 * std::size_t{i}];
        take.data()[count + i] = static_cast<float>(sample);
        peak = std::max(peak, std::abs(sample));
    }
    sampleCount.store(count + room, std::memory_order_release);
}
