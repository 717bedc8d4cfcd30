#include "audition/Audition.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <thread>

#include "RenderWatch.h"
#include "ScratchFolder.h"
#include "SoundFiles.h"
#include "audiounits/devices/AudioDevices.h"
#include "audiounits/devices/ManualDevice.h"
#include "startup/Instrument.h"

namespace {

class AuditionTest : public testing::Test {
  protected:
    AuditionTest() {
        AudioDevices::use(m_device);
        m_instrument.emplace();
        m_instrument->play();
        m_audition.emplace();
    }

    /// A steady sound of 1000 frames.
    std::string file(const std::string& name, std::int16_t level) const {
        const std::string path = m_folder.file(name);
        const std::vector<std::int16_t> samples(1000, level);
        SoundFiles::write(path, SoundFiles::wav({}, SoundFiles::bytes(samples)));
        return path;
    }
    std::vector<std::int16_t> render(std::size_t frames) {
        std::vector<std::int16_t> out(frames);
        m_device->render(out);
        return out;
    }
    void playFile(const std::string& path, const Audition::Playing& how) {
        m_audition->playFile(path, how,
                             [this](const Audition::Loaded& loaded) { m_told.push_back(loaded); });
    }
    /// Until the file that was asked for last was told of; a generous time.
    void waitUntilTold() {
        for (int i = 0; i < 5000 && m_told.empty(); ++i) {
            RunLoop::main().turn();
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
        }
        ASSERT_EQ(m_told.size(), 1u);
    }
    static std::uint32_t buses() { return Vornery::sharedInstance().mixer().inputBusCount(); }

    ScratchFolder m_folder;
    std::shared_ptr<ManualDevice> m_device = std::make_shared<ManualDevice>();
    std::optional<Instrument> m_instrument;
    std::optional<Audition> m_audition;
    std::vector<Audition::Loaded> m_told;
};

}  // namespace

TEST_F(AuditionTest, playsTheFileThatWasAskedForLastBesideTheInstrument) {
    EXPECT_EQ(buses(), 1u);
    playFile(file("first.wav", 1000), {});
    playFile(file("last.wav", 2000), {.from = 900, .gain = 0.5f});
    waitUntilTold();
    EXPECT_EQ(buses(), 3u);
    RenderWatch watch;
    EXPECT_EQ(render(100), std::vector<std::int16_t>(100, 1000));
    EXPECT_NEAR(m_audition->peak(), 1000 / 32768.f, 1e-6f);
    EXPECT_EQ(m_audition->position(), 1000u);
    EXPECT_EQ(render(100), std::vector<std::int16_t>(100, 0));
    EXPECT_FALSE(m_audition->isPlaying());
    EXPECT_THAT(watch.violations(), testing::IsEmpty());
}

TEST_F(AuditionTest, tellsWhatItCannotPlayAndPlaysOn) {
    m_audition->play(Audition::load(file("good.wav", 3000)).sound, {.looping = true});
    playFile(m_folder.file("none.wav"), {});
    waitUntilTold();
    EXPECT_FALSE(m_told[0].sound);
    EXPECT_THAT(m_told[0].error, testing::HasSubstr("none.wav"));
    EXPECT_EQ(render(2000), std::vector<std::int16_t>(2000, 3000));
    m_audition->stop();
    EXPECT_EQ(render(10), std::vector<std::int16_t>(10, 0));
}

TEST_F(AuditionTest, scrubsAndIsSilentUntilThen) {
    m_audition->scrub(Audition::load(file("good.wav", 3000)).sound, 1.f);
    EXPECT_EQ(render(64), std::vector<std::int16_t>(64, 0));
    m_audition->scrubTo(500);
    EXPECT_TRUE(m_audition->isScrubbing());
    EXPECT_GT(render(1000).back(), 900);
    // It goes while the device would still ask for more.
    m_audition.reset();
    EXPECT_EQ(render(64), std::vector<std::int16_t>(64, 0));
}
