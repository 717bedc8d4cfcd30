#include "screens/AudioSetup.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <thread>

#include "JackServer.h"
#include "PulseServer.h"
#include "RenderWatch.h"
#include "ScratchFolder.h"
#include "VornWave2.h"
#include "audiounits/devices/AudioDevices.h"
#include "startup/Instrument.h"

namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

/// The instrument, holding a key all the time, with the settings screen open.
class AudioSetupServersTest : public testing::Test {
  protected:
    void open() {
        setenv("OMBRIX_DATA", m_folder.path().c_str(), 1);
        m_instrument.emplace(true);
        useSound();
        m_watch.emplace();
        m_instrument->play();
        m_audio.setHost([this] { ++m_switches; }, [] { return false; });
        m_audio.setShown(true);
        m_instrument->notes().tinkleIvory(48);
    }
    void TearDown() override {
        m_audio.setShown(false);
        m_instrument->stop();
        EXPECT_THAT(m_watch->violations(), IsEmpty());
        m_watch.reset();
    }
    // A wave of 441 Hz, without end as far as the tests go.
    void useSound() {
        SampleMemory samples(441000);
        for (int i = 0; i < 441000; ++i)
            samples.data()[i] = i / 50 % 2 ? 0.8f : -0.8f;
        m_instrument->waves().useUnsaved(VornWave2::initWithOwnershipOfData(
            std::move(samples), 441000, StreamDescription::float32(1), "Recording"));
        m_instrument->setParameter(ParameterId::grainSpeed, 1);
        m_instrument->setParameter(ParameterId::grainSize, 0.5f);
        m_instrument->setParameter(ParameterId::preamp, 1);
    }
    static bool comesTo(const std::function<bool()>& truth) {
        for (int i = 0; i < 1000 && !truth(); ++i) {
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
            RunLoop::main().turn();
        }
        return truth();
    }
    static bool offers(const QVariantList& rows, const QString& name) {
        return std::ranges::any_of(
            rows, [&](const QVariant& row) { return row.value<AudioOption>().name == name; });
    }
    static AudioDeviceInfo playing() { return AudioDevices::current()->info(); }
    std::string state() const { return m_audio.state().toStdString(); }

    ScratchFolder m_folder;
    PulseServer m_pulse;
    JackServer m_jack;
    UserDefaults m_defaults{m_folder.file("defaults")};
    std::optional<Instrument> m_instrument;
    std::optional<RenderWatch> m_watch;
    AudioSetup m_audio{m_defaults};
    int m_switches = 0;
};

}  // namespace

TEST_F(AudioSetupServersTest, sinkBufferAndSourceOfPulseAudioChangeWhilePlaying) {
    m_pulse.start(48000);
    open();
    EXPECT_TRUE(comesTo([&] { return offers(m_audio.inputs(), "pulse:mic"); }));
    EXPECT_TRUE(offers(m_audio.devices(), "pulse:out"));

    m_audio.chooseDevice("pulse:feed");
    EXPECT_TRUE(comesTo([&] { return playing().name == "pulse:feed"; }));
    // What is played goes to "feed", which "mic" hears.
    EXPECT_TRUE(comesTo([&] { return m_audio.inputLevel() > 0.1f; }));
    m_audio.chooseBufferSize("2048");
    EXPECT_TRUE(comesTo([&] { return m_audio.inputLevel() > 0.1f; }));
    EXPECT_THAT(state(), StartsWith("Playing through PulseAudio (feed-sink) at 48000 Hz, 2048 "));
    m_audio.chooseInput("pulse:out.monitor");
    EXPECT_TRUE(comesTo([&] { return m_audio.inputLevel() == 0; }));

    EXPECT_TRUE(m_audio.problem().isEmpty());
    EXPECT_EQ(AudioChoice::kept(m_defaults),
              (AudioChoice{"pulse:feed", 2048, "pulse:out.monitor"}));
}

TEST_F(AudioSetupServersTest, aServerThatIsHeldIsRefusedWhileJackPlaysOn) {
    m_pulse.start();
    open();
    EXPECT_TRUE(comesTo([&] { return offers(m_audio.devices(), "pulse:out"); }));
    m_jack.start(48000, 256);
    m_audio.chooseDevice("jack");
    EXPECT_TRUE(comesTo([&] { return playing().name == "jack"; }));
    EXPECT_TRUE(comesTo([&] { return m_audio.bufferSizes().isEmpty(); }));
    EXPECT_THAT(state(), StartsWith("Playing through JACK at 48000 Hz, 256 frames, "));
    EXPECT_EQ(m_switches, 1);

    m_pulse.process().signal(SIGSTOP);
    m_audio.chooseDevice("pulse:out");
    EXPECT_TRUE(comesTo([&] { return !m_audio.problem().isEmpty(); }));
    EXPECT_THAT(m_audio.problem().toStdString(), HasSubstr("pulse:out does not answer"));
    EXPECT_EQ(playing().name, "jack");
    EXPECT_EQ(m_switches, 1) << "the sound was interrupted for a server that hangs";
    EXPECT_EQ(AudioChoice::kept(m_defaults).device, "jack");
}
