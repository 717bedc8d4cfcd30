#pragma once

#include <gtest/gtest.h>

#include "PassthruRecordingUnit.h"
#include "audiounits/RenderScope.h"
#include "files/VornOutputAudioFile.h"

/// A 16-bit source that counts: sample n of all that it ever gave is n, wrapped.
class CountingSource : public VornCallbackUnit {
  public:
    CountingSource() : VornCallbackUnit(&render, StreamDescription::sint16(1)) {}

    std::atomic<std::uint32_t> given{0};
    bool silent = false;  // zeros and the flag that says so
    OSStatus status = noErr;

  private:
    static OSStatus render(void* context, AudioUnitRenderActionFlags* flags, const AudioTimeStamp*,
                           std::uint32_t, std::uint32_t frames, AudioBufferList* data) {
        auto& source = *static_cast<CountingSource*>(context);
        for (std::uint32_t i = 0; i < frames; ++i)
            data->samples<std::int16_t>()[i] =
                source.silent ? std::int16_t{0} : static_cast<std::int16_t>(source.given + i);
        if (source.silent)
            *flags |= kAudioUnitRenderAction_OutputIsSilence;
        source.given += frames;
        return source.status;
    }
};

/// A recording unit behind a counting source, rendered as a device would.
struct RecordedRun {
    RecordedRun() { unit.setUpstreamUnit(source); }

    /// One buffer, which must be what the source gave.
    void render(std::uint32_t frames) {
        std::int16_t out[8192];
        AudioBufferList list = AudioBufferList::single(out, 1, frames * 2);
        AudioUnitRenderActionFlags flags = 0;
        const AudioTimeStamp time;
        const std::uint32_t first = source.given;
        OSStatus status;
        {
            const RenderScope scope;
            status = unit.callback()->inputProc(unit.callback()->inputProcRefCon, &flags, &time, 0,
                                                frames, &list);
        }
        ASSERT_EQ(status, noErr);
        for (std::uint32_t i = 0; i < frames; ++i)
            ASSERT_EQ(out[i],
                      source.silent ? std::int16_t{0} : static_cast<std::int16_t>(first + i));
    }

    CountingSource source;
    PassthruRecordingUnit unit;
};

inline std::vector<std::int16_t> recorded(const std::string& path) {
    VornAudioFile file(path);
    StreamDescription format;
    file.dataFormat(&format);
    EXPECT_EQ(format, StreamDescription::sint16(1));
    std::vector<std::int16_t> samples(file.packetCount());
    auto bytes = static_cast<std::uint32_t>(samples.size() * 2);
    EXPECT_TRUE(file.ReadIntoBuffer(samples.data(), &bytes));
    return samples;
}

inline bool countsOn(const std::vector<std::int16_t>& samples) {
    for (std::size_t i = 1; i < samples.size(); ++i)
        if (samples[i] != static_cast<std::int16_t>(samples[i - 1] + 1))
            return false;
    return true;
}
