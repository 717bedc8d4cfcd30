#include "screens/TakeScreen.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <random>
#include <thread>

#include "ManualClock.h"
#include "ScratchFolder.h"
#include "audiounits/devices/AudioDevices.h"
#include "audiounits/devices/ManualDevice.h"
#include "startup/Instrument.h"

namespace {

using testing::ElementsAre;
using Sound = std::vector<std::int16_t>;

class TakeScreenTest : public testing::Test {
  protected:
    TakeScreenTest() {
        setenv("OMBRIX_DATA", m_folder.path().c_str(), 1);
        AudioDevices::use(m_device);
        m_screen = std::make_unique<TakeScreen>(m_take);
        QObject::connect(m_screen.get(), &TakeScreen::bubbleChanged,
                         [this] { m_bubbles.push_back(m_screen->bubble().toStdString()); });
        QObject::connect(m_screen.get(), &TakeScreen::problem,
                         [this](const QString& line) { m_said.push_back(line.toStdString()); });
        QObject::connect(m_screen.get(), &TakeScreen::taken, [this] { m_said.push_back("taken"); });
        QObject::connect(
            m_screen.get(), &TakeScreen::alert,
            [this](const QString& title, const QString& message, const QString& button) {
                m_said.push_back((title + '|' + message + '|' + button).toStdString());
            });
    }
    void hear(const Sound& sound) {
        for (std::size_t at = 0; at < sound.size(); at += 4096)
            m_device->capture(
                std::span(sound).subspan(at, std::min<std::size_t>(4096, sound.size() - at)));
    }
    ScratchFolder m_folder;
    ManualClock m_clock;
    std::shared_ptr<ManualDevice> m_device = std::make_shared<ManualDevice>();
    Instrument m_instrument{false};
    AudioTake m_take{m_instrument.waves(), nullptr};
    std::unique_ptr<TakeScreen> m_screen;
    std::vector<std::string> m_bubbles, m_said;
};

}  // namespace

TEST_F(TakeScreenTest, showsTimeLevelAndOutlineWhileTheButtonIsHeld) {
    m_screen->waveRecordDown();
    EXPECT_TRUE(m_screen->recording());
    EXPECT_EQ(m_screen->remaining(), "30 s left");
    Sound sound(1470, 8192);
    sound.resize(1500, -16384);
    hear(sound);
    m_clock.pass(1);
    EXPECT_EQ(m_screen->level(), 0.5f);
    EXPECT_EQ(m_screen->remaining(), "29 s left");
    EXPECT_EQ(m_screen->seconds(), 1500 / 44100.f);
    const auto expected = std::vector<TakeOutline::Column>{{0, 0.25f}, {-0.5f, 0}};
    EXPECT_EQ(m_screen->outline().columns(), expected);
    m_clock.pass(1);
    EXPECT_LT(m_screen->level(), 0.5f) << "nothing came since";
    hear(Sound(2000, 100));
    m_clock.pass(1);
    EXPECT_EQ(m_screen->outline().columns().size(), 3u);
    EXPECT_EQ(m_screen->outline().columns()[1].high, 100 / 32768.f) << "the last one has grown";
    m_screen->waveRecordUp();
    EXPECT_THAT(m_bubbles, ElementsAre("", "  00:00  ", "00:01", "00:02", "00:03", ""));
    EXPECT_THAT(m_said, ElementsAre("taken"));
    EXPECT_FALSE(m_screen->recording());
    EXPECT_EQ(m_screen->level(), 0);
    EXPECT_EQ(m_screen->remaining(), "");
    EXPECT_TRUE(m_screen->outline().columns().empty());
    EXPECT_FALSE(m_instrument.waves().currentWaveFilename());
}

TEST_F(TakeScreenTest, endsByItselfAfterThirtySecondsAndALaterReleaseDoesNothing) {
    m_screen->waveRecordDown();
    hear(Sound(3000, 20000));
    m_clock.pass(29);
    EXPECT_EQ(m_bubbles.back(), "00:29");
    m_clock.pass(1);
    EXPECT_FALSE(m_screen->recording());
    m_screen->waveRecordUp();
    EXPECT_THAT(m_said, ElementsAre("taken"));
}

TEST_F(TakeScreenTest, saysOnceWhatIsWrongWithTheMicrophone) {
    m_screen->waveRecordDown();
    m_clock.pass(5);
    ASSERT_EQ(m_said.size(), 1u);
    EXPECT_THAT(m_said[0], testing::StartsWith("No microphone answers"));
    m_screen->waveRecordUp();
    EXPECT_EQ(m_said.at(1),
              "No Audio Recorded|To record audio to use as a new instrument, hold the microphone "
              "button down, and release it to end recording.|OK");
    m_said.clear();
    m_screen->waveRecordDown();
    hear(Sound(4000));
    m_screen->waveRecordUp();
    EXPECT_THAT(m_said, ElementsAre(testing::StartsWith("Nothing but silence"), "taken"));
    m_said.clear();
    std::string error;
    ASSERT_TRUE(AudioDevices::choose("clock", error));
    m_screen->waveRecordDown();
    EXPECT_FALSE(m_screen->recording());
    EXPECT_THAT(m_said, ElementsAre(testing::StartsWith("There is no microphone")));
}

// Under the thread sanitizer this tells whether the frames may be read while more arrive.
TEST_F(TakeScreenTest, readsTheFramesWhileTheDeviceAddsOthers) {
    const unsigned seed = 77;
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    Sound sound(200000);
    for (auto& sample : sound)
        sample = static_cast<std::int16_t>(static_cast<int>(random() % 65536) - 32768);
    m_screen->waveRecordDown();
    TakeOutline all;
    {
        std::jthread device([&] { hear(sound); });
        while (m_take.framesHeard() < sound.size())
            all.grow(m_take.heard());
    }
    all.grow(m_take.heard());
    TakeOutline atOnce;
    const std::vector<float> floats(sound.begin(), sound.end());
    EXPECT_EQ(atOnce.grow(floats), 1);
    EXPECT_EQ(all.columns(), atOnce.columns());
    EXPECT_EQ(all.columns().size(), 137u);
    m_screen->waveRecordUp();
}
