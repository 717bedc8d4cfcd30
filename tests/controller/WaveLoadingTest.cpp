#include "wavechoice/WaveLoading.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

#include "ScratchFolder.h"
#include "SoundFiles.h"
#include "startup/Instrument.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class WaveLoadingTest : public testing::Test, protected WaveLoadingDelegate {
  protected:
    WaveLoadingTest() {
        setenv("OMBRIX_DATA", m_data.path().c_str(), 1);
        std::filesystem::create_directories(m_data.path());
        m_sounds.setDelegate(this);
    }
    void waveArrived() override { m_arrived.push_back(name()); }
    void loadingTold(const std::string& line) override { m_told.push_back(line); }

    std::string name() const { return m_waves.currentWaveFilename().value_or("none"); }
    WaveLoading::Then hear(const std::string& as) {
        return [this, as](bool arrived) { m_heard.push_back(as + (arrived ? " yes" : " no")); };
    }
    void settle() {
        while (m_sounds.loading())
            RunLoop::main().turn();
    }
    /// A sound of that many 44100 Hz frames, or at another rate, which takes a while to load.
    std::string sound(const ScratchFolder& folder, const std::string& name, std::size_t frames,
                      std::uint32_t rate = 44100) {
        const std::vector<std::int16_t> samples(frames, 1000);
        SoundFiles::write(folder.file(name),
                          SoundFiles::wav({.rate = rate}, SoundFiles::bytes(samples)));
        return folder.file(name);
    }

    ScratchFolder m_data;
    ScratchFolder m_elsewhere;
    Instrument m_instrument;
    WaveChoice& m_waves = m_instrument.waves();
    WaveLoading m_sounds{m_waves};
    std::vector<std::string> m_arrived;
    std::vector<std::string> m_told;
    std::vector<std::string> m_heard;
};

}  // namespace

TEST_F(WaveLoadingTest, ofOverlappingChoicesTheLastWinsAndAFailureChangesNothing) {
    const std::string slow = sound(m_data, "slow.wav", 20'000'000, 48000);
    const std::string small = sound(m_data, "small.wav", 100);
    SoundFiles::write(m_data.file("broken.wav"), "RIFF");
    for (int i = 0; i < 20; ++i)
        m_sounds.setWaveTo(slow, hear("slow"));
    m_sounds.setWaveTo(small, hear("small"));
    EXPECT_EQ(name(), "none") << "nothing changes before it has arrived";
    settle();
    m_sounds.setWaveTo(m_data.file("broken.wav"), hear("broken"));
    settle();
    EXPECT_EQ(name(), "small.wav");
    EXPECT_THAT(m_told, ElementsAre(HasSubstr("broken.wav")));
    m_sounds.setWaveTo(slow, hear("slow"));
    m_sounds.cancel();
    EXPECT_FALSE(m_sounds.loading());
    m_sounds.setWaveTo(small, hear("again"));
    EXPECT_FALSE(m_sounds.loading()) << "the sound in use is there at once";
    EXPECT_THAT(m_heard, ElementsAre("small yes", "broken no", "slow no", "again yes"));

    m_sounds.setWaveTo(slow, hear("slow"));
    m_waves.useUnsaved(VornWave2::initWithOwnershipOfData(SampleMemory(10), 10,
                                                          StreamDescription::float32(1), "take"));
    settle();
    EXPECT_EQ(name(), "none") << "a take that was made meanwhile stays";
    m_sounds.setWaveTo(m_data.file("missing.wav"), nullptr);
    settle();
    EXPECT_THAT(m_arrived, ElementsAre("small.wav", "small.wav", "Sine Wave.wav"));
    EXPECT_EQ(m_told.size(), 1u);
}

TEST_F(WaveLoadingTest, aFirstSoundThatFailsLeavesTheInstrumentWithTheDefaultSound) {
    SoundFiles::write(m_data.file("broken.wav"), "RIFF");
    m_sounds.setWaveTo(m_data.file("broken.wav"), hear("broken"));
    settle();
    EXPECT_THAT(m_heard, ElementsAre("broken no"));
    EXPECT_EQ(name(), "Sine Wave.wav");
    EXPECT_EQ(m_waves.currentWave()->sampleCount(), 44100u);
}

TEST_F(WaveLoadingTest, aSoundFromElsewhereIsFoundAgainAndReplacesNothing) {
    const std::string mine = sound(m_data, "drum.wav", 50);
    for (const char* const expected : {"drum 2.wav", "drum 2.wav"}) {
        m_sounds.takeIn(sound(m_elsewhere, "drum.wav", 70), nullptr);
        settle();
        EXPECT_EQ(name(), expected);
        EXPECT_EQ(std::filesystem::file_size(*WaveChoice::findWavePath(name())), 44u + 140u);
    }
    m_sounds.takeIn(mine, nullptr);
    settle();
    EXPECT_EQ(name(), "drum.wav") << "what is at home stays there";
    EXPECT_EQ(std::filesystem::file_size(mine), 44u + 100u);

    SoundFiles::write(m_elsewhere.file("text.wav"), "no sound at all");
    m_sounds.takeIn(m_elsewhere.file("text.wav"), nullptr);
    settle();
    EXPECT_EQ(name(), "drum.wav");
    EXPECT_THAT(m_told, ElementsAre(HasSubstr("text.wav")));
    m_sounds.takeIn(sound(m_elsewhere, "long.wav", 9'000'000), nullptr);
    m_sounds.cancel();
    while (std::filesystem::exists(m_data.file("long.wav")))
        RunLoop::main().turn();
    std::size_t files = 0;
    for (const auto& entry : std::filesystem::directory_iterator(m_data.path()))
        files += entry.path().extension() == ".wav";
    EXPECT_EQ(files, 2u);

    setenv("OMBRIX_DATA", "/proc/nowhere", 1);
    m_told.clear();
    m_sounds.takeIn(sound(m_elsewhere, "snare.wav", 90), nullptr);
    settle();
    EXPECT_EQ(m_waves.currentWave()->sampleCount(), 90u) << "it plays";
    EXPECT_EQ(name(), "none");
    EXPECT_THAT(m_told, ElementsAre(HasSubstr("not kept")));
}
