#include <csignal>
#include <fstream>
#include <thread>

#include "PlayingTest.h"
#include "PulseServer.h"
#include "ScratchFolder.h"
#include "audiounits/devices/AudioDevices.h"

namespace {

class AlsaDeviceTest : public PlayingTest {
  protected:
    AlsaDeviceTest() {
        std::ofstream(m_scratch.file("alsa.conf"))
            << "</usr/share/alsa/alsa.conf>\n"
            << pcm("floats", "type null")
            << pcm("at48000", "type plug slave { pcm null rate 48000 }")
            << pcm("words", "type linear slave { pcm null format S16_LE }");
        setenv("ALSA_CONFIG_PATH", m_scratch.file("alsa.conf").c_str(), 1);
    }

    // A PCM that writes what it is given to a file of its own name.
    std::string pcm(const std::string& name, const std::string& slave) {
        return "pcm." + name + " { type file format raw file \"" + m_scratch.file(name) +
               "\" slave.pcm { " + slave + " } }\n";
    }

    template <typename Sample>
    std::vector<float> channelOfFile(const std::string& name, std::size_t channel,
                                     float fullScale) {
        std::ifstream file(m_scratch.file(name), std::ios::binary);
        std::vector<float> mono;
        Sample frame[2];
        while (file.read(reinterpret_cast<char*>(frame), sizeof(frame)))
            mono.push_back(static_cast<float>(frame[channel]) / fullScale);
        return mono;
    }

    ScratchFolder m_scratch;
};

TEST_F(AlsaDeviceTest, theToneIsWrittenOnBothChannelsAtAnyPeriodInTime) {
    for (const std::uint32_t period : {16u, 64u, 1024u, 8192u}) {
        SCOPED_TRACE(period);
        AudioDevices::setPreferredPeriod(period);
        play("alsa:floats");
        EXPECT_EQ(info().name, "alsa:floats");
        EXPECT_EQ(info().periodFrames, period);
        const auto begun = std::chrono::steady_clock::now();
        EXPECT_TRUE(client().playsOn(2 * 44100));
        const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - begun;
        EXPECT_GT(taken.count(), 1.0) << "a PCM without a clock must not run away";
        stop();
        expectTone(Tone::measure(channelOfFile<float>("floats", 0, 1), 44100));
        expectTone(Tone::measure(channelOfFile<float>("floats", 1, 1), 44100));
        std::remove(m_scratch.file("floats").c_str());
    }
}

TEST_F(AlsaDeviceTest, otherRatesAndFormatsAreWrittenAsThePcmWantsThem) {
    play("alsa:at48000");
    EXPECT_EQ(info().rate, 48000);
    EXPECT_TRUE(client().playsOn(44100));
    stop();
    expectTone(Tone::measure(channelOfFile<float>("at48000", 1, 1), 48000));

    play("alsa:words");
    EXPECT_TRUE(client().playsOn(44100));
    stop();
    expectTone(Tone::measure(channelOfFile<std::int32_t>("words", 1, 2147483648.f), 44100));
}

TEST_F(AlsaDeviceTest, nullPlaysAndCapturesSilence) {
    play("alsa:null", true);
    EXPECT_TRUE(client().playsOn(22050));
    EXPECT_GT(client().heard(), 0u);
    AudioDevices::current()->stop();
    EXPECT_EQ(Tone::measure(client().recording(), 44100).windows, 0u);
}

TEST_F(AlsaDeviceTest, aPulseServerBehindThePluginMayDieAndComeBack) {
    PulseServer server;
    server.start();
    play("alsa:pulse");
    EXPECT_EQ(info().name, "alsa:pulse");
    for (int round = 0; round < 2; ++round) {
        const auto recording = server.record("out", 2);
        expectTone(Tone::measure(channelOf(recording.frames, 2, 0), 44100));
        if (round == 1)
            break;
        server.process().kill();
        EXPECT_TRUE(comesTo("clock"));
        server.start();
        EXPECT_TRUE(comesTo("alsa:pulse"));
    }
    server.process().signal(SIGSTOP);
    EXPECT_TRUE(comesTo("clock"));
    server.process().signal(SIGCONT);
    EXPECT_TRUE(comesTo("alsa:pulse"));
}

}  // namespace
