#include "wavechoice/WaveChoice.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>

#include "ScratchFolder.h"
#include "wavechoice/GeneratedWaves.h"

namespace {

/// A 44100 Hz float WAV file, samples as they are.
void writeFloatWav(const std::string& path, std::uint16_t channels,
                   const std::vector<float>& samples) {
    const auto bytes = static_cast<std::uint32_t>(samples.size() * sizeof(float));
    std::ofstream file(path, std::ios::binary);
    const auto put = [&](auto value) {
        file.write(reinterpret_cast<const char*>(&value), sizeof value);
    };
    file << "RIFF";
    put(bytes + 36);
    file << "WAVEfmt ";
    put(std::uint32_t{16});
    put(std::uint16_t{3});
    put(channels);
    put(std::uint32_t{44100});
    put(static_cast<std::uint32_t>(44100 * 4 * channels));
    put(static_cast<std::uint16_t>(4 * channels));
    put(std::uint16_t{32});
    file << "data";
    put(bytes);
    file.write(reinterpret_cast<const char*>(samples.data()), bytes);
}

class WaveChoiceTest : public testing::Test {
  protected:
    WaveChoiceTest() {
        setenv("OMBRIX_DATA", m_folder.path().c_str(), 1);
        for (auto& synth : m_voices.synths)
            synth = std::make_unique<GrainSynthesiser>(nullptr);
    }
    const GrainSynthesiser& lastVoice() const { return *m_voices.synths[11]; }

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
