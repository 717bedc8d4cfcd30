#include "wavechoice/WaveChoice.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <limits>

#include "ScratchFolder.h"
#include "SoundFiles.h"
#include "wavechoice/GeneratedWaves.h"

namespace {

void writeFloatWav(const std::string& path, std::uint16_t channels,
                   const std::vector<float>& samples) {
    SoundFiles::write(path, SoundFiles::wav({.channels = channels, .bits = 32, .floats = true},
                                            SoundFiles::bytes(samples)));
}

class WaveChoiceTest : public testing::Test {
  protected:
    WaveChoiceTest() {
        setenv("OMBRIX_DATA", m_folder.path().c_str(), 1);
        for (auto& synth : m_voices.voiceSynths)
            synth = std::make_unique<GrainSynthesiser>(nullptr);
    }
    const GrainSynthesiser& lastVoice() const { return *m_voices.voiceSynths[11]; }
    static std::shared_ptr<VornWaveSequence> sound(const std::vector<float>& samples) {
        return VornWaveSequence::sequenceWithWave(VornWave2::initWithCopyOfData(
            samples.data(), static_cast<std::uint32_t>(samples.size()),
            StreamDescription::float32(1), "Test"));
    }
    std::size_t filesInFolder() const {
        return static_cast<std::size_t>(
            std::distance(std::filesystem::directory_iterator(m_folder.path()), {}));
    }

    ScratchFolder m_folder;
    Voices m_voices;
    WaveChoice m_choice{m_voices};
};

}  // namespace

TEST(GeneratedWaves, haveTheShapesThatTheirNamesSay) {
    std::vector<float> wave(GeneratedWaves::kLength);
    const auto make = [&](const char* name) {
        GeneratedWaves::generatorNamed(name)(wave.data(), GeneratedWaves::kLength);
        return std::pair(*std::ranges::min_element(wave), *std::ranges::max_element(wave));
    };
    const auto sine = make("Sine Wave");
    EXPECT_NEAR(sine.first, -0.5f, 1e-6f);
    EXPECT_NEAR(sine.second, 0.5f, 1e-6f);
    EXPECT_EQ(wave[0], 0.f);
    EXPECT_EQ(make("Square Wave"), std::pair(-0.5f, 0.5f));
    EXPECT_EQ(wave[0], 0.5f);
    EXPECT_EQ(wave[50], 0.5f);
    EXPECT_EQ(wave[51], -0.5f);
    const auto triangle = make("Triangle Wave");
    EXPECT_EQ(wave[0], 0.5f);
    EXPECT_NEAR(wave[25], 0.f, 0.01f);
    EXPECT_NEAR(triangle.first, -0.5f, 0.01f);
    const auto sawtooth = make("Sawtooth Wave");
    EXPECT_EQ(wave[0], 0.5f);
    EXPECT_GE(sawtooth.first, 0.f);
    EXPECT_EQ(GeneratedWaves::generatorNamed("Noise Wave"), nullptr);
}

TEST_F(WaveChoiceTest, resolvesNamesInTheDataFolderFirst) {
    EXPECT_EQ(WaveChoice::plainWaveName("user/a/My Take.wav"), "My Take.wav");
    EXPECT_EQ(WaveChoice::plainWaveName("internal/Bell.wav"), "Bell.wav");
    EXPECT_EQ(WaveChoice::plainWaveName("generated/sine"), "Sine Wave.wav");
    EXPECT_EQ(WaveChoice::plainWaveName("Plain.wav"), "Plain.wav");
    const auto shipped = WaveChoice::findWavePath("generated/square");
    ASSERT_TRUE(shipped);
    EXPECT_EQ(WaveChoice::builtInSound(*shipped), "Square Wave");
    writeFloatWav(WaveChoice::dataFile("Square Wave.wav"), 1, {0.25f});
    EXPECT_EQ(WaveChoice::findWavePath("generated/square"),
              WaveChoice::dataFile("Square Wave.wav"));
    EXPECT_FALSE(WaveChoice::builtInSound(WaveChoice::dataFile("Square Wave.wav")));
    EXPECT_FALSE(WaveChoice::findWavePath("Nowhere.wav"));
    EXPECT_FALSE(WaveChoice::findWavePath(*shipped)) << "a name, not a path";
}

TEST_F(WaveChoiceTest, generatesABuiltInWaveWhateverItsFileHolds) {
    ASSERT_TRUE(m_choice.setWaveTo(WaveChoice::defaultSoundFile()).wave);
    EXPECT_EQ(m_choice.currentWaveFilename(), "Sine Wave.wav");
    ASSERT_EQ(lastVoice().sampleCount(), GeneratedWaves::kLength);
    EXPECT_EQ(lastVoice().data()[0], 0.f);
    EXPECT_NEAR(*std::max_element(lastVoice().data(), lastVoice().data() + 44100), 0.5f, 1e-6f);
}

TEST_F(WaveChoiceTest, hearsAStereoFileAsTheMeanOfItsChannels) {
    writeFloatWav(m_folder.file("pair.wav"), 2, {0.5f, -0.25f, 1.f, 0.f, 0.125f, 0.125f});
    ASSERT_TRUE(m_choice.setWaveTo(m_folder.file("pair.wav")).wave);
    ASSERT_EQ(lastVoice().sampleCount(), 3u);
    EXPECT_EQ(lastVoice().data()[0], 0.125f);
    EXPECT_EQ(lastVoice().data()[1], 0.5f);
    EXPECT_EQ(lastVoice().data()[2], 0.125f);
}

TEST_F(WaveChoiceTest, fallsBackOnceAndKeepsTheSoundThatPlays) {
    writeFloatWav(m_folder.file("mono.wav"), 1, {0.5f, 0.25f});
    std::ofstream(m_folder.file("broken.wav")) << "no sound at all";
    ASSERT_TRUE(m_choice.setWaveTo(m_folder.file("mono.wav")).wave);
    const auto broken = m_choice.setWaveTo(m_folder.file("broken.wav"));
    EXPECT_FALSE(broken.wave);
    EXPECT_NE(broken.error.find("broken.wav"), std::string::npos);
    EXPECT_EQ(m_choice.currentWaveFilename(), "mono.wav");
    EXPECT_EQ(lastVoice().sampleCount(), 2u);
    ASSERT_TRUE(m_choice.setWaveTo(m_folder.file("missing.wav")).wave);
    EXPECT_EQ(m_choice.currentWaveFilename(), "Sine Wave.wav");
}

TEST_F(WaveChoiceTest, storesSamplesTruncatedAndWrappedAround) {
    constexpr float kInfinite = std::numeric_limits<float>::infinity();
    const std::string path = WaveChoice::dataFile("stored.wav");
    ASSERT_EQ(WaveChoice::storeWave(*sound({0.f, 1.f, -1.f, 0.99999f, -0.99999f, 0.00003f, 1.5f,
                                            -2.f, std::nanf(""), 1e30f, -kInfinite}),
                                    path),
              "");
    EXPECT_EQ(SoundFiles::samplesOf(path),
              (std::vector<std::int16_t>{0, 32767, -32767, 32766, -32766, 0, -16386, 2, 0, -1, 0}));
    const WaveChoice::Loaded loaded = m_choice.setWaveTo(path);
    ASSERT_TRUE(loaded.wave);
    EXPECT_EQ(m_choice.currentWave()->sampleCount(), 11u);
    EXPECT_EQ(WaveChoice::storeWave(*sound({}), path), "");
    EXPECT_TRUE(SoundFiles::samplesOf(path).empty());
    EXPECT_EQ(filesInFolder(), 1u);
}

TEST_F(WaveChoiceTest, storesNothingBeyondTheMemoryOfTheFirstWindow) {
    const auto two = sound({0.5f, 0.5f})->sequenceByAppendingSequence(*sound({0.25f, 0.25f}));
    ASSERT_EQ(WaveChoice::storeWave(*two, WaveChoice::dataFile("two.wav")), "");
    EXPECT_EQ(SoundFiles::samplesOf(WaveChoice::dataFile("two.wav")),
              (std::vector<std::int16_t>{16383, 16383, 0, 0}));
}

TEST_F(WaveChoiceTest, failsToStoreInOneLineAndKeepsWhatIsThere) {
    EXPECT_NE(WaveChoice::storeWave(*sound({1.f}), m_folder.file("none/a.wav")).find("none/a.wav"),
              std::string::npos);
    std::filesystem::create_directory(m_folder.file("taken.wav"));
    ASSERT_EQ(mkfifo(m_folder.file("pipe.wav").c_str(), 0600), 0);
    for (const char* name : {"taken.wav", "pipe.wav"}) {
        EXPECT_NE(WaveChoice::storeWave(*sound({1.f}), m_folder.file(name)), "") << name;
        EXPECT_FALSE(std::filesystem::is_regular_file(m_folder.file(name))) << name;
    }
    EXPECT_EQ(filesInFolder(), 2u);
}

TEST_F(WaveChoiceTest, namesAndUsesARecording) {
    EXPECT_EQ(WaveChoice::findAvailableWaveName("Recording"), "Recording Audio");
    for (const char* name : {"Recording Audio.wav", "Recording Audio 2.wav", "Mine.wav"})
        writeFloatWav(WaveChoice::dataFile(name), 1, {0.f});
    EXPECT_EQ(WaveChoice::findAvailableWaveName("Recording"), "Recording Audio 3");
    EXPECT_TRUE(WaveChoice::hasWaveWithName("Mine"));
    EXPECT_TRUE(WaveChoice::hasWaveWithName("Sine Wave"));
    EXPECT_FALSE(WaveChoice::hasWaveWithName("Mine.wav"));

    ASSERT_TRUE(m_choice.setWaveTo(WaveChoice::dataFile("Mine.wav")).wave);
    const float samples[] = {0.5f, -0.5f, 0.25f};
    m_choice.useUnsaved(
        VornWave2::initWithCopyOfData(samples, 3, StreamDescription::float32(1), "Recording"));
    EXPECT_FALSE(m_choice.currentWaveFilename());
    for (const auto& synth : m_voices.voiceSynths)
        EXPECT_EQ(synth->sampleCount(), 3u);
    EXPECT_EQ(m_choice.currentWave()->sampleCount(), 3u);
}
