#include "PlayingTest.h"

#include <gmock/gmock.h>

#include <chrono>
#include <thread>

#include "audiounits/devices/AudioDevices.h"

void PlayingTest::play(const std::string& device, bool capture) {
    std::string error;
    ASSERT_TRUE(AudioDevices::choose(device, error)) << error;
    m_client = std::make_unique<ToneClient>();
    m_watch = std::make_unique<RenderWatch>();
    ASSERT_EQ(AudioDevices::current()->start(*m_client, capture), noErr);
}

void PlayingTest::stop() {
    if (!m_client)
        return;
    AudioDevices::current()->stop();
    const std::uint64_t produced = m_client->produced();
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    EXPECT_EQ(m_client->produced(), produced) << "asked for frames after stop";
    EXPECT_EQ(m_client->faults(), 0u);
    EXPECT_THAT(m_watch->violations(), testing::IsEmpty());
    if (RenderWatch::working()) {
        EXPECT_GT(m_watch->renders(), 0u);
    }
    m_watch.reset();
    m_client.reset();
}

AudioDeviceInfo PlayingTest::info() {
    return AudioDevices::current()->info();
}

bool PlayingTest::comesTo(const std::string& name) {
    for (int i = 0; i < 2000; ++i) {
        if (info().name == name)
            return true;
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return false;
}

void PlayingTest::expectTone(const Tone& tone) {
    EXPECT_GT(tone.windows, 5u);
    EXPECT_NEAR(tone.hertz, ToneClient::kHertz, 0.5);
    EXPECT_NEAR(tone.amplitude, ToneClient::kAmplitude, 0.01);
}
