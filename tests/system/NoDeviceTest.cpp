#include <cstdlib>

#include "PlayingTest.h"
#include "ScratchFolder.h"
#include "audiounits/devices/AudioDevices.h"

namespace {

// An account with no server, no D-Bus and no sound hardware.
class NoDeviceTest : public PlayingTest {
  protected:
    NoDeviceTest() {
        setenv("JACK_DEFAULT_SERVER", "ombrix-nobody", 1);
        unsetenv("JACK_NO_START_SERVER");
        setenv("XDG_RUNTIME_DIR", m_empty.path().c_str(), 1);
        setenv("PULSE_SERVER", ("unix:" + m_empty.file("native")).c_str(), 1);
        setenv("DBUS_SYSTEM_BUS_ADDRESS", ("unix:path=" + m_empty.file("bus")).c_str(), 1);
        unsetenv("HOME");
    }

    ScratchFolder m_empty;
};

TEST_F(NoDeviceTest, playingGoesOnByTheClockAndTheUserIsToldOnce) {
    testing::internal::CaptureStderr();
    play("");
    EXPECT_EQ(info().name, "clock");
    EXPECT_TRUE(client().playsOn(3 * 44100));
    stop();
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "ombrix: no sound device answers (JACK, PulseAudio, ALSA); going on without sound "
              "until one appears\n");
}

TEST_F(NoDeviceTest, aNamedDeviceThatIsNotThereIsWaitedFor) {
    for (const char* const name : {"jack", "pulse", "pulse:nowhere", "alsa", "alsa:hw:CARD=None"}) {
        SCOPED_TRACE(name);
        testing::internal::CaptureStderr();
        play(name);
        EXPECT_EQ(info().name, "clock");
        EXPECT_TRUE(client().playsOn(4410));
        stop();
        EXPECT_EQ(testing::internal::GetCapturedStderr(),
                  "ombrix: the device \"" + std::string(name) +
                      "\" does not answer; going on without sound until it does\n");
    }
}

TEST_F(NoDeviceTest, theClockIsChosenWithoutAWordAndHearsSilence) {
    testing::internal::CaptureStderr();
    for (const std::uint32_t period : {16u, 8192u}) {
        AudioDevices::setPreferredPeriod(period);
        play("clock", true);
        EXPECT_TRUE(client().playsOn(22050));
        EXPECT_EQ(client().longest(), period);
        EXPECT_GT(client().heard(), 0u);
        stop();
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(NoDeviceTest, listingIsQuietAndEndsWithTheClockAsDefault) {
    testing::internal::CaptureStderr();
    const auto all = AudioDevices::list();
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    ASSERT_FALSE(all.empty());
    EXPECT_EQ(all.back().name, "clock");
    EXPECT_TRUE(all.back().isDefault);
    for (const AudioDeviceInfo& device : all)
        EXPECT_FALSE(device.name.starts_with("jack") || device.name.starts_with("pulse"));
}

}  // namespace
