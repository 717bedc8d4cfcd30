#include "audiounits/HardwareIO.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numeric>
#include <vector>

#include "StreamSource.h"
#include "audiounits/RenderScope.h"
#include "audiounits/devices/AudioDevices.h"
#include "audiounits/devices/ManualDevice.h"

namespace {

class HardwareIOTest : public testing::Test {
  protected:
    HardwareIOTest() { AudioDevices::use(m_device); }

    template <typename T>
    OSStatus set(AudioUnitPropertyID property, AudioUnitScope scope, AudioUnitElement element,
                 const T& value) {
        return m_hardware.setProperty(property, scope, element, &value, sizeof value);
    }
    std::vector<std::int16_t> pull(std::uint32_t frames) {
        std::vector<std::int16_t> out(frames, 77);
        m_device->render(out);
        return out;
    }

    std::shared_ptr<ManualDevice> m_device = std::make_shared<ManualDevice>();
    HardwareIO m_hardware;
};

/// What an input callback does: fetches the period in stereo.
struct Listener {
    AudioUnit hardware;
    std::vector<std::int16_t> pairs;
    OSStatus status = 1;

    static OSStatus heard(void* self, AudioUnitRenderActionFlags* flags, const AudioTimeStamp* time,
                          std::uint32_t bus, std::uint32_t frames, AudioBufferList* none) {
        auto& listener = *static_cast<Listener*>(self);
        EXPECT_EQ(none, nullptr);
        listener.pairs.assign(std::size_t{2} * frames, 0);
        auto list = AudioBufferList::single(listener.pairs.data(), 2, 4 * frames);
        listener.status = AudioUnitRender(listener.hardware, flags, time, bus, frames, &list);
        return noErr;
    }
};

}  // namespace

TEST_F(HardwareIOTest, playsItsBusWhileStartedAndSilenceOtherwise) {
    StreamSource<std::int16_t> source{
        [](auto frame, auto) { return static_cast<std::int16_t>(frame); }};
    ASSERT_EQ(
        set(kAudioUnitProperty_SetRenderCallback, kAudioUnitScope_Input, 0, source.callback()),
        noErr);
    EXPECT_EQ(m_hardware.start(), kAudioUnitErr_Uninitialized);
    ASSERT_EQ(m_hardware.initialise(), noErr);
    EXPECT_EQ(pull(4), std::vector<std::int16_t>(4, 0));
    ASSERT_EQ(m_hardware.start(), noErr);
    EXPECT_EQ(pull(4), (std::vector<std::int16_t>{0, 1, 2, 3}));
    source.status = -1;
    EXPECT_EQ(pull(4), std::vector<std::int16_t>(4, 0));
    ASSERT_EQ(m_hardware.stop(), noErr);
    EXPECT_EQ(pull(4), std::vector<std::int16_t>(4, 0));
}

TEST_F(HardwareIOTest, playsFloatStereoAsTheMeanOfItsChannels) {
    StreamSource<float> source{[](auto, auto channel) { return channel ? 0.5f : 0.25f; }};
    ASSERT_EQ(set(kAudioUnitProperty_StreamFormat, kAudioUnitScope_Input, 0,
                  StreamDescription::float32(2)),
              noErr);
    set(kAudioUnitProperty_SetRenderCallback, kAudioUnitScope_Input, 0, source.callback());
    m_hardware.initialise();
    m_hardware.start();
    EXPECT_EQ(pull(2), std::vector<std::int16_t>(2, 12288));
}

TEST_F(HardwareIOTest, capturesOnlyWhileACallbackIsSetAndEnabled) {
    Listener listener{&m_hardware, {}};
    const AURenderCallbackStruct callback{&Listener::heard, &listener};
    std::vector<std::int16_t> spoken(100);
    std::iota(spoken.begin(), spoken.end(), std::int16_t{1});
    m_hardware.initialise();
    m_hardware.start();
    m_device->capture(spoken);
    EXPECT_TRUE(listener.pairs.empty());

    ASSERT_EQ(set(kAudioOutputUnitProperty_EnableIO, kAudioUnitScope_Input, 1, std::uint8_t{1}),
              noErr);
    ASSERT_EQ(set(kAudioUnitProperty_StreamFormat, kAudioUnitScope_Output, 1,
                  StreamDescription::sint16(2)),
              noErr);
    ASSERT_EQ(set(kAudioOutputUnitProperty_SetInputCallback, kAudioUnitScope_Global, 1, callback),
              noErr);
    m_device->capture(spoken);
    ASSERT_EQ(listener.status, noErr);
    ASSERT_EQ(listener.pairs.size(), 200u);
    for (std::size_t i = 0; i < 200; ++i)
        EXPECT_EQ(listener.pairs[i], spoken[i / 2]);

    set(kAudioOutputUnitProperty_SetInputCallback, kAudioUnitScope_Global, 1,
        AURenderCallbackStruct{});
    listener.pairs.clear();
    m_device->capture(spoken);
    EXPECT_TRUE(listener.pairs.empty());
}

TEST_F(HardwareIOTest, takesEnableIOInTwoSizesAndNothingElseWrong) {
    EXPECT_EQ(set(kAudioOutputUnitProperty_EnableIO, kAudioUnitScope_Output, 0, std::uint32_t{1}),
              noErr);
    EXPECT_EQ(set(kAudioOutputUnitProperty_EnableIO, kAudioUnitScope_Output, 0, std::uint16_t{1}),
              kAudioUnitErr_InvalidPropertyValue);
    EXPECT_EQ(set(kAudioOutputUnitProperty_EnableIO, kAudioUnitScope_Input, 0, std::uint8_t{1}),
              kAudioUnitErr_InvalidScope);
    EXPECT_EQ(set(kAudioUnitProperty_StreamFormat, kAudioUnitScope_Output, 0,
                  StreamDescription::sint16(1)),
              kAudioUnitErr_PropertyNotWritable);
    EXPECT_EQ(set(kAudioUnitProperty_StreamFormat, kAudioUnitScope_Input, 0,
                  StreamDescription::sint16(1, 48000)),
              kAudioUnitErr_FormatNotSupported);
    EXPECT_EQ(set(4711, kAudioUnitScope_Global, 0, std::uint32_t{1}),
              kAudioUnitErr_InvalidProperty);
}

TEST(RenderScope, flushesDenormalsOnlyInside) {
    volatile float tiny = 1e-38f;
    volatile float sum = 0;
    {
        RenderScope outer;
        { RenderScope inner; }
        sum = tiny * 0.1f;
        EXPECT_EQ(sum, 0.f);
        EXPECT_TRUE(RenderScope::active());
    }
    sum = tiny * 0.1f;
    EXPECT_NE(sum, 0.f);
    EXPECT_FALSE(RenderScope::active());
}
