#include "audiounits/FormatConverter.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "RenderedUnit.h"
#include "StreamSource.h"
#include "Tone.h"

namespace {

OSStatus connect(FormatConverter& unit, const AURenderCallbackStruct& source,
                 const StreamDescription& from, const StreamDescription& to) {
    setUnit(&unit, kAudioUnitProperty_SetRenderCallback, kAudioUnitScope_Input, 0, source);
    setUnit(&unit, kAudioUnitProperty_StreamFormat, kAudioUnitScope_Input, 0, from);
    setUnit(&unit, kAudioUnitProperty_StreamFormat, kAudioUnitScope_Output, 0, to);
    return unit.initialise();
}

}  // namespace

TEST(FormatConverter, changesSampleFormatAndChannels) {
    StreamSource<float> pairs{[](auto, auto channel) { return channel ? 0.5f : -0.25f; }};
    FormatConverter toMono;
    ASSERT_EQ(connect(toMono, pairs.callback(), StreamDescription::float32(2),
                      StreamDescription::sint16(1)),
              noErr);
    EXPECT_EQ(renderUnit<std::int16_t>(&toMono, 3, 1, 3),
              (std::vector<std::int16_t>{4096, 4096, 4096}));
    StreamSource<std::int16_t> mono{
        [](auto frame, auto) { return static_cast<std::int16_t>(frame * 16384); }};
    FormatConverter toStereo;
    ASSERT_EQ(connect(toStereo, mono.callback(), StreamDescription::sint16(1),
                      StreamDescription::float32(2)),
              noErr);
    EXPECT_EQ(renderUnit<float>(&toStereo, 2, 2, 2), (std::vector<float>{0.f, 0.f, 0.5f, 0.5f}));
}

TEST(FormatConverter, keepsPitchAndLevelAtAnotherRateWhateverTheBuffers) {
    for (const double rate : {22050.0, 48000.0, 8000.0}) {
        SCOPED_TRACE(rate);
        StreamSource<float> tone{[&](auto frame, auto) {
            return 0.5f * static_cast<float>(std::sin(frame * 2 * M_PI * 440 / rate));
        }};
        FormatConverter unit;
        ASSERT_EQ(connect(unit, tone.callback(), StreamDescription::float32(1, rate),
                          StreamDescription::float32(1)),
                  noErr);
        std::vector<float> all;
        for (const std::uint32_t frames : {1u, 7u, 8192u, 64u, 1023u, 8192u, 4000u, 8192u}) {
            const auto part = renderUnit<float>(&unit, frames, 1, frames);
            all.insert(all.end(), part.begin(), part.end());
        }
        const Tone heard = Tone::measure(std::span(all).subspan(1024), 44100);
        EXPECT_NEAR(heard.hertz, 440, 1);
        EXPECT_NEAR(heard.amplitude, 0.5, 0.01);
        EXPECT_NEAR(tone.next / rate, static_cast<double>(all.size()) / 44100, 0.05);
    }
}

TEST(FormatConverter, refusesWhatItCannotDo) {
    FormatConverter unit;
    AudioBufferList none;
    AudioUnitRenderActionFlags flags = 0;
    const AudioTimeStamp time;
    EXPECT_EQ(unit.render(&flags, &time, 0, 1, &none), kAudioUnitErr_Uninitialized);
    EXPECT_EQ(connect(unit, {}, StreamDescription::float32(1, 44100.0 * 1000),
                      StreamDescription::float32(1)),
              kAudioUnitErr_FormatNotSupported);
    ASSERT_EQ(connect(unit, {}, StreamDescription::float32(1), StreamDescription::float32(1)),
              noErr);
    EXPECT_EQ(unit.render(&flags, &time, 0, 1, &none), kAudioUnitErr_NoConnection);
    EXPECT_EQ(setUnit(&unit, kAudioUnitProperty_ElementCount, kAudioUnitScope_Input, 0, 2u),
              kAudioUnitErr_InvalidProperty);
}
