#include "audiounits/MultichannelMixer.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

#include "RenderedUnit.h"
#include "StreamSource.h"

namespace {

constexpr std::uint32_t kFrames = 64;

class MixerTest : public testing::Test {
  protected:
    template <typename T>
    OSStatus set(AudioUnitPropertyID property, AudioUnitElement element, const T& value,
                 AudioUnitScope scope = kAudioUnitScope_Input) {
        return setUnit(&m_mixer, property, scope, element, value);
    }
    void setBuses(std::uint32_t count) {
        ASSERT_EQ(set(kAudioUnitProperty_ElementCount, 0, count), noErr);
    }
    template <typename Sample>
    void feed(AudioUnitElement element, StreamSource<Sample>& source,
              const StreamDescription& format) {
        ASSERT_EQ(set(kAudioUnitProperty_StreamFormat, element, format), noErr);
        ASSERT_EQ(set(kAudioUnitProperty_SetRenderCallback, element, source.callback()), noErr);
    }
    std::vector<std::int16_t> render(std::uint32_t frames) {
        return renderUnit<std::int16_t>(&m_mixer, frames, 1, frames);
    }

    MultichannelMixer m_mixer;
};

}  // namespace

TEST_F(MixerTest, oneMono16BitBusPassesBitForBit) {
    ASSERT_EQ(m_mixer.initialise(), noErr);
    StreamSource<std::int16_t> source{
        [](auto frame, auto) { return static_cast<std::int16_t>(frame * 13 - 32768); }};
    feed(0, source, StreamDescription::sint16(1));
    for (std::uint32_t start = 0; start < 8000; start += 1000) {
        const auto out = render(1000);
        for (std::uint32_t i = 0; i < out.size(); ++i)
            ASSERT_EQ(out[i], static_cast<std::int16_t>((start + i) * 13 - 32768));
    }
}

TEST_F(MixerTest, sumsBusesOfAllFormatsAndSaturates) {
    ASSERT_EQ(m_mixer.initialise(), noErr);
    setBuses(4);  // the last one stays unconnected
    StreamSource<std::int16_t> integers{[](auto frame, auto) -> std::int16_t {
        return frame == 0 ? 30000 : frame == 1 ? -30000 : 100;
    }};
    StreamSource<float> floats{[](auto frame, auto) {
        return frame == 0 ? 0.5f : frame == 1 ? -0.5f : 200.f / 32768.f;
    }};
    StreamSource<float> pairs{[](auto frame, auto channel) {
        return frame < 2 ? 0.f : channel ? 0.25f : -0.125f;
    }};
    feed(0, integers, StreamDescription::sint16(1));
    feed(1, floats, StreamDescription::float32(1));
    feed(2, pairs, StreamDescription::float32(2));
    const auto out = render(kFrames);
    EXPECT_EQ(out[0], 32767);
    EXPECT_EQ(out[1], -32768);
    for (std::uint32_t i = 2; i < kFrames; ++i)
        EXPECT_EQ(out[i], 100 + 200 + 2048);
    EXPECT_EQ(floats.busAsked, 1u);
}

TEST_F(MixerTest, aFailingBusIsLeftOutAndNothingAtAllIsSilence) {
    ASSERT_EQ(m_mixer.initialise(), noErr);
    EXPECT_EQ(render(kFrames), std::vector<std::int16_t>(kFrames, 0));
    StreamSource<std::int16_t> source{[](auto, auto) { return std::int16_t{5}; }};
    feed(0, source, StreamDescription::sint16(1));
    source.status = -1;
    EXPECT_EQ(render(kFrames), std::vector<std::int16_t>(kFrames, 0));
    setBuses(2);
    StreamSource<std::int16_t> other{[](auto, auto) { return std::int16_t{9}; }};
    feed(1, other, StreamDescription::sint16(1));
    EXPECT_EQ(render(kFrames), std::vector<std::int16_t>(kFrames, 9));
}

TEST_F(MixerTest, answersWrongCallsWithThePlatformsCodes) {
    AudioBufferList none;
    AudioUnitRenderActionFlags flags = 0;
    const AudioTimeStamp time;
    EXPECT_EQ(m_mixer.render(&flags, &time, 0, kFrames, &none), kAudioUnitErr_Uninitialized);
    const std::uint32_t two = 2;
    const std::uint8_t byte = 2;
    EXPECT_EQ(set(4711, 0, two), kAudioUnitErr_InvalidProperty);
    EXPECT_EQ(set(kAudioUnitProperty_ElementCount, 0, byte), kAudioUnitErr_InvalidPropertyValue);
    EXPECT_EQ(set(kAudioUnitProperty_StreamFormat, 0, two), kAudioUnitErr_InvalidPropertyValue);
    EXPECT_EQ(set(kAudioUnitProperty_StreamFormat, 1, StreamDescription::sint16(1)),
              kAudioUnitErr_InvalidElement);
    EXPECT_EQ(set(kAudioUnitProperty_StreamFormat, 0, StreamDescription{}),
              kAudioUnitErr_FormatNotSupported);
    EXPECT_EQ(set(kAudioUnitProperty_ElementCount, 0, two, kAudioUnitScope_Output),
              kAudioUnitErr_PropertyNotWritable);
    std::uint32_t count = 0;
    std::uint32_t size = 1;
    EXPECT_EQ(
        m_mixer.property(kAudioUnitProperty_ElementCount, kAudioUnitScope_Input, 0, &count, &size),
        kAudioUnitErr_InvalidPropertyValue);
}

TEST_F(MixerTest, busesAreAddedAndConnectedWhileItRenders) {
    ASSERT_EQ(m_mixer.initialise(), noErr);
    StreamSource<std::int16_t> first{[](auto, auto) { return std::int16_t{1}; }};
    StreamSource<std::int16_t> second{[](auto, auto) { return std::int16_t{10}; }};
    feed(0, first, StreamDescription::sint16(1));
    std::atomic<bool> done{false};
    std::thread audio([&] {
        while (!done) {
            for (const std::int16_t sample : render(kFrames))
                ASSERT_TRUE(sample == 1 || sample == 11) << sample;
        }
    });
    for (int turn = 0; turn < 200; ++turn) {
        setBuses(3);
        feed(2, second, StreamDescription::sint16(1));
        setBuses(1);
    }
    done = true;
    audio.join();
}
