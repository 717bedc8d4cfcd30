#pragma once

#include <atomic>
#include <cstdint>
#include <vector>

#include "graph/VornIOUnit.h"
#include "memory/SampleMemory.h"

/// One audio take while it is made: shared by the main thread and the input callback, which meet in
/// the state word alone. The callback writes count and peak while the state is below
/// `stopRequested` and nothing once it has answered with `stopped`; then the record is the main
/// thread's. Before that the main thread may read the frames of the take that the count names: they
/// are stored before it, and never again.
struct RecordingAudioData {
    enum State : std::uint32_t { armed = 0, capturing = 1, stopRequested = 2, stopped = 3 };

    static constexpr std::uint32_t kTakeCapacity = 1323000;   // frames: 30 s at 44100 Hz
    static constexpr std::uint32_t kScratchCapacity = 44100;  // frames

    /// Everything is allocated and present before a callback sees it. [main]
    explicit RecordingAudioData(VornIOUnit& unit);

    /// [render] The input callback; `record` is the record, or null. Takes the left channel of one
    /// cycle; what the take has no room for is dropped. Always returns 0.
    static OSStatus input(void* record, AudioUnitRenderActionFlags* flags,
                          const AudioTimeStamp* time, std::uint32_t bus, std::uint32_t frames,
                          AudioBufferList* ioData);

    /// What the hardware is asked for.
    static constexpr StreamDescription inputFormat() { return StreamDescription::sint16(2); }

    VornIOUnit& hardware;
    SampleMemory take;                  // one channel, -32768 to 32767
    std::vector<std::int16_t> scratch;  // two channels
    std::uint32_t takeCapacity;
    std::uint32_t scratchCapacity;
    std::atomic<std::uint32_t> sampleCount{0};  // frames received; any thread may look on
    std::atomic<std::uint32_t> state{armed};
    std::int32_t peak = 0;

  private:
    void receive(bool keep, AudioUnitRenderActionFlags* flags, const AudioTimeStamp* time,
                 std::uint32_t bus, std::uint32_t frames);
};
