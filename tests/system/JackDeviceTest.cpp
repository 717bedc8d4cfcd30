#include <csignal>
#include <thread>

#include "JackServer.h"
#include "PlayingTest.h"
#include "audiounits/devices/AudioDevices.h"

namespace {

class JackDeviceTest : public PlayingTest {
  protected:
    // A foreign client records; a busy machine may drop cycles, so several times.
    static void expectToneOnBothPorts() {
        std::vector<float> stereo;
        const auto channel = [&](std::size_t index) {
            return Tone::measure(channelOf(stereo, 2, index), info().rate);
        };
        for (int attempt = 0; attempt < 6; ++attempt) {
            stereo = JackServer::record({"ombrix:out_1", "ombrix:out_2"}, 1);
            if (std::abs(channel(0).hertz - ToneClient::kHertz) < 0.5)
                break;
        }
        expectTone(channel(0));
        expectTone(channel(1));
    }

    JackServer m_server;
};

TEST_F(JackDeviceTest, theToneIsHeardOnBothChannelsAtAnyRateAndPeriod) {
    const struct {
        int rate, period;
    } cases[] = {{44100, 64}, {44100, 1024}, {48000, 64}, {48000, 1024}};
    for (const auto& [rate, period] : cases) {
        SCOPED_TRACE(std::to_string(rate) + " Hz, period " + std::to_string(period));
        m_server.start(rate, period);
        play("jack");
        EXPECT_EQ(info().name, "jack");
        EXPECT_EQ(info().rate, rate);
        EXPECT_EQ(info().periodFrames, static_cast<std::uint32_t>(period));
        EXPECT_GE(info().latencySeconds, double(period) / rate);
        expectToneOnBothPorts();
        stop();
        m_server.process().terminate();
    }
}

TEST_F(JackDeviceTest, aServerThatDiesAndComesBackIsTakenAgain) {
    m_server.start(44100, 512);
    play("");
    for (const auto& [rate, period] : {std::pair{48000, 256}, std::pair{44100, 1024}}) {
        m_server.process().kill();
        EXPECT_TRUE(comesTo("clock"));
        EXPECT_TRUE(client().playsOn(4410)) << "the clock must keep the music going";
        m_server.start(rate, period);
        EXPECT_TRUE(comesTo("jack"));
        EXPECT_EQ(info().rate, rate);
        expectToneOnBothPorts();
    }
}

TEST_F(JackDeviceTest, aServerThatIsHeldAndLetGoIsTakenAgain) {
    m_server.start();
    play("jack");
    m_server.process().signal(SIGSTOP);
    EXPECT_TRUE(comesTo("clock"));
    EXPECT_TRUE(client().playsOn(4410));
    m_server.process().signal(SIGCONT);
    EXPECT_TRUE(comesTo("jack"));
    expectToneOnBothPorts();
}

TEST_F(JackDeviceTest, stoppingReturnsWhileTheServerIsHeld) {
    m_server.start();
    play("jack");
    m_server.process().signal(SIGSTOP);
    stop();
    m_server.process().signal(SIGCONT);
}

TEST_F(JackDeviceTest, aServerThatAppearsLateIsTakenAndItsNewPeriodFollowed) {
    testing::internal::CaptureStderr();
    play("");
    EXPECT_TRUE(comesTo("clock"));
    m_server.start(44100, 512);
    EXPECT_TRUE(comesTo("jack"));
    m_server.process().kill();
    EXPECT_TRUE(comesTo("clock"));
    m_server.start(44100, 512);
    EXPECT_TRUE(comesTo("jack"));
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "ombrix: no sound device answers (JACK, PulseAudio, ALSA); going on without sound "
              "until one appears\n");
    runProgram({"jack_bufsize", "128"});
    EXPECT_EQ(info().periodFrames, 128u);
    expectToneOnBothPorts();
}

TEST_F(JackDeviceTest, theFirstMicrophoneIsHeardOnlyWhenCapturing) {
    m_server.start(48000, 512);
    play("jack", true);
    EXPECT_TRUE(client().playsOn(44100));
    runProgram({"jack_disconnect", "system:capture_1", "ombrix:in_1"});
    ASSERT_EQ(runProgram({"jack_connect", "ombrix:out_1", "ombrix:in_1"}), 0);
    EXPECT_TRUE(client().playsOn(3 * 44100));
    AudioDevices::current()->stop();
    const auto heard = client().recording();
    expectTone(Tone::measure(heard, 44100));
    stop();

    play("jack", false);
    EXPECT_TRUE(client().playsOn(4410));
    EXPECT_EQ(client().heard(), 0u);
    EXPECT_NE(runProgram({"jack_connect", "system:capture_1", "ombrix:in_1"}), 0);
}

TEST_F(JackDeviceTest, theServerIsListedFirst) {
    m_server.start(48000, 256);
    const auto all = AudioDevices::list();
    ASSERT_FALSE(all.empty());
    EXPECT_EQ(all[0].name, "jack");
    EXPECT_TRUE(all[0].isDefault);
    EXPECT_EQ(all[0].rate, 48000);
    EXPECT_EQ(all[0].periodFrames, 256u);
    EXPECT_GE(all[0].latencySeconds, 256.0 / 48000);
}

}  // namespace
