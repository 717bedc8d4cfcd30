#include "screens/AudioSetup.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <thread>

#include "ScratchFolder.h"
#include "audiounits/devices/AudioDevices.h"
#include "audiounits/devices/ManualDevice.h"
#include "devices/AudioWords.h"
#include "startup/Instrument.h"

namespace {

using testing::HasSubstr;
using Presence = AudioDeviceState::Presence;

/// The instrument on a device driven by hand; no server answers.
class AudioSetupTest : public testing::Test {
  protected:
    AudioSetupTest() {
        setenv("OMBRIX_DATA", m_folder.path().c_str(), 1);
        setenv("PULSE_SERVER", "unix:/nonexistent", 1);
        setenv("JACK_DEFAULT_SERVER", "none-of-this-name", 1);
        AudioDevices::use(m_device);
        m_instrument.emplace(true);
        m_instrument->play();
        m_audio.setHost([this] { ++m_silenced; }, [this] { return m_takeRuns; });
    }
    bool captures() {
        m_device->capture(std::vector<std::int16_t>(64, -16384));
        RunLoop::main().turn();
        return m_audio.inputLevel() > 0;
    }
    bool comesTo(const std::function<bool()>& truth) {
        for (int i = 0; i < 400 && !truth(); ++i) {
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
            RunLoop::main().turn();
        }
        return truth();
    }

    ScratchFolder m_folder;
    UserDefaults m_defaults{m_folder.file("defaults")};
    std::shared_ptr<ManualDevice> m_device = std::make_shared<ManualDevice>();
    std::optional<Instrument> m_instrument;
    AudioSetup m_audio{m_defaults};
    int m_silenced = 0;
    bool m_takeRuns = false;
};

}  // namespace

TEST_F(AudioSetupTest, aDeviceThatDoesNotAnswerIsRefusedAndTheOldOnePlaysOn) {
    const AudioChoice before = AudioChoice::current();
    for (const bool shown : {true, false}) {
        SCOPED_TRACE(shown);
        m_audio.setShown(shown);
        m_audio.chooseDevice("pulse:speaker");
        EXPECT_TRUE(comesTo([&] { return !m_audio.problem().isEmpty(); }));
        EXPECT_THAT(m_audio.problem().toStdString(), HasSubstr("pulse:speaker"));
        EXPECT_EQ(AudioChoice::current(), before);
        EXPECT_EQ(AudioDevices::current(), m_device);
        EXPECT_FALSE(m_defaults.string("audio-device"));
    }
    EXPECT_EQ(m_silenced, 1) << "what is shown to be absent interrupts nothing";
    std::vector<std::int16_t> frames(64, 1);
    m_device->render(frames);
    EXPECT_EQ(m_device->framesRendered(), 64u);
}

TEST_F(AudioSetupTest, whatWasChosenIsUsedAtTheNextStart) {
    m_audio.chooseDevice("clock");
    m_audio.chooseBufferSize("256");
    EXPECT_TRUE(m_audio.problem().isEmpty());
    EXPECT_EQ(AudioDevices::current()->info().periodFrames, 256u);
    m_audio.chooseInput("jack");
    EXPECT_THAT(m_audio.problem().toStdString(), HasSubstr("no such audio input"));

    AudioDevices::use(m_device);
    AudioDevices::setPreferredPeriod(0);
    const UserDefaults later(m_folder.file("defaults"));
    EXPECT_EQ(AudioSetup::useKept(later), "");
    EXPECT_EQ(AudioChoice::current(), (AudioChoice{"clock", 256, ""}));

    m_defaults.set("audio-device", "gramophone");
    m_defaults.set("audio-buffer-frames", std::int64_t{1} << 40);
    m_defaults.set("audio-input", "pulse:mic");
    EXPECT_THAT(AudioSetup::useKept(m_defaults), HasSubstr("gramophone: no such audio device"));
    EXPECT_EQ(AudioChoice::current(), (AudioChoice{"", 0, "pulse:mic"}));
}

TEST_F(AudioSetupTest, theInputIsHeardWhileShownAndLeftToATake) {
    EXPECT_FALSE(captures());
    m_audio.setShown(true);
    EXPECT_TRUE(comesTo([&] { return captures(); }));
    EXPECT_NEAR(m_audio.inputLevel(), 0.5, 0.01);

    // A take replaces the callback; closing the screen leaves it alone.
    m_takeRuns = true;
    int periods = 0;
    const AURenderCallbackStruct take{[](void* count, auto...) -> OSStatus {
                                          ++*static_cast<int*>(count);
                                          return noErr;
                                      },
                                      &periods};
    Vornery::sharedInstance().hardware().enableRecordingVia(take, StreamDescription::sint16(2));
    m_audio.chooseBufferSize("64");
    EXPECT_THAT(m_audio.problem().toStdString(), HasSubstr("recording"));
    m_audio.setShown(false);
    captures();
    EXPECT_EQ(periods, 1);
    m_audio.setShown(true);
    captures();
    EXPECT_EQ(periods, 2);
    m_takeRuns = false;
    EXPECT_TRUE(comesTo([&] { return captures(); }));
    m_audio.setShown(false);
    m_device->capture(std::vector<std::int16_t>(64, 1));
}

TEST(AudioWords, sayWhatPlaysHowLateAndWhatIsMissing) {
    AudioDeviceInfo jack;
    jack.name = "jack";
    jack.rate = 44100;
    jack.periodFrames = 256;
    jack.latencySeconds = 0.0116;
    jack.realTime = true;
    jack.xruns = 2;
    EXPECT_EQ(AudioWords::state(jack, {Presence::playing, "jack", "", 0}, ""),
              "Playing through JACK at 44100 Hz, 256 frames, 11.6 ms.");
    EXPECT_EQ(AudioWords::health(jack), "Real-time priority was granted. 2 periods were lost.");
    AudioDeviceInfo clock;
    clock.name = "clock";
    clock.rate = 44100;
    EXPECT_EQ(AudioWords::state(clock, {}, ""),
              "No sound device answers; looking for one every second.");
    EXPECT_EQ(AudioWords::state(clock, {Presence::lost, "pulse:%1", "", 1}, ""),
              "The device pulse:%1 went away; looking for it every second.");
    EXPECT_EQ(AudioWords::state(clock, {}, "alsa:usb"),
              "The device alsa:usb does not answer; looking for it every second.");
}
