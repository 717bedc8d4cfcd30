#include <gmock/gmock.h>

#include <csignal>
#include <thread>

#include "PlayingTest.h"
#include "PulseServer.h"
#include "audiounits/devices/AudioDevices.h"

namespace {

class PulseDeviceTest : public PlayingTest {
  protected:
    void expectToneFrom(const std::string& sink) {
        Tone left, right;
        for (int attempt = 0; attempt < 6; ++attempt) {
            const auto stereo = m_server.record(sink, 2).frames;
            left = Tone::measure(channelOf(stereo, 2, 0), 44100);
            right = Tone::measure(channelOf(stereo, 2, 1), 44100);
            if (std::abs(left.hertz - ToneClient::kHertz) < 0.5)
                break;
        }
        expectTone(left);
        expectTone(right);
    }

    PulseServer m_server;
};

TEST_F(PulseDeviceTest, theToneIsHeardOnBothChannelsAtAnyRateAndPeriod) {
    const struct {
        int rate;
        std::uint32_t period;
    } cases[] = {{44100, 64}, {44100, 1024}, {48000, 256}, {48000, 8192}};
    for (const auto& [rate, period] : cases) {
        SCOPED_TRACE(std::to_string(rate) + " Hz, period " + std::to_string(period));
        m_server.start(rate);
        AudioDevices::setPreferredPeriod(period);
        play("pulse");
        EXPECT_EQ(info().name, "pulse:out");
        EXPECT_EQ(info().rate, rate);
        EXPECT_EQ(info().periodFrames, period);
        expectToneFrom("out");
        EXPECT_GT(info().latencySeconds, 0);
        stop();
        m_server.process().terminate();
    }
}

TEST_F(PulseDeviceTest, aSinkIsChosenByNameAndTakenWhenItAppears) {
    m_server.start();
    play("pulse:feed");
    EXPECT_EQ(info().name, "pulse:feed");
    expectToneFrom("feed");
    stop();
    testing::internal::CaptureStderr();
    play("pulse:later");
    EXPECT_EQ(info().name, "clock");
    runProgram({"pactl", "load-module", "module-null-sink", "sink_name=later", "norewinds=1"});
    EXPECT_TRUE(comesTo("pulse:later"));
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "ombrix: the device \"pulse:later\" does not answer; going on without sound until it "
              "does\n");
    expectToneFrom("later");
}

TEST_F(PulseDeviceTest, aServerThatDiesIsHeldOrComesLateIsTakenAgain) {
    play("");
    EXPECT_TRUE(comesTo("clock"));
    m_server.start(44100);
    EXPECT_TRUE(comesTo("pulse:out"));
    expectToneFrom("out");

    m_server.process().kill();
    EXPECT_TRUE(comesTo("clock"));
    EXPECT_TRUE(client().playsOn(4410)) << "the clock must keep the music going";
    m_server.start(48000);
    EXPECT_TRUE(comesTo("pulse:out"));
    expectToneFrom("out");

    m_server.process().signal(SIGSTOP);
    EXPECT_TRUE(comesTo("clock"));
    EXPECT_TRUE(client().playsOn(4410));
    m_server.process().signal(SIGCONT);
    EXPECT_TRUE(comesTo("pulse:out"));
    expectToneFrom("out");
}

TEST_F(PulseDeviceTest, theDefaultSourceIsHeardOnlyWhenCapturing) {
    m_server.start(48000);
    play("pulse:feed", true);
    EXPECT_TRUE(client().playsOn(3 * 44100));
    AudioDevices::current()->stop();
    expectTone(Tone::measure(client().recording(), 44100));
    stop();
    play("pulse:feed");
    EXPECT_TRUE(client().playsOn(4410));
    EXPECT_EQ(client().heard(), 0u);
}

TEST_F(PulseDeviceTest, aSourceIsChosenByNameAndTheDefaultOneStandsInForIt) {
    m_server.start(48000);
    runProgram({"pactl", "set-default-source", "out.monitor"});
    const auto inputs = AudioDevices::listInputs();
    ASSERT_EQ(inputs.size(), 3u);
    EXPECT_EQ(inputs[0].name, "pulse:mic");
    EXPECT_EQ(inputs[1].name, "pulse:out.monitor");
    std::string error;
    for (const std::string name : {"jack", "pulse", "pulse:", "pulse:a\nb", "mic"}) {
        EXPECT_FALSE(AudioDevices::chooseInput(name, error)) << name;
        EXPECT_THAT(error, testing::HasSubstr("no such audio"));
    }
    // What is played goes to "feed": the default source hears none of it, "mic" all.
    const struct {
        std::string input;
        bool hears;
    } cases[] = {{"", false}, {"pulse:mic", true}, {"pulse:gone", false}};
    for (const auto& [input, hears] : cases) {
        SCOPED_TRACE(input);
        ASSERT_TRUE(AudioDevices::chooseInput(input, error));
        EXPECT_EQ(AudioDevices::input(), input);
        play("pulse:feed", true);
        EXPECT_TRUE(client().playsOn(2 * 44100));
        AudioDevices::current()->stop();
        EXPECT_GT(client().heard(), 44100u);
        const Tone tone = Tone::measure(client().recording(), 44100);
        EXPECT_EQ(tone.windows > 5, hears);
        if (hears)
            expectTone(tone);
        stop();
    }
}

TEST_F(PulseDeviceTest, everySinkIsListedTheDefaultFirst) {
    m_server.start(48000);
    const auto all = AudioDevices::list();
    ASSERT_GE(all.size(), 3u);
    EXPECT_EQ(all[0].name, "pulse:out");
    EXPECT_EQ(all[0].description, "out-sink (the server's default)");
    EXPECT_EQ(all[0].rate, 48000);
    EXPECT_TRUE(all[0].isDefault);
    EXPECT_EQ(all[1].name, "pulse:feed");
}

}  // namespace
