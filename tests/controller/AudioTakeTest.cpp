#include "recording/AudioTake.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <random>

#include "ManualClock.h"
#include "RenderWatch.h"
#include "ScratchFolder.h"
#include "audiounits/devices/AudioDevices.h"
#include "audiounits/devices/ManualDevice.h"
#include "startup/Instrument.h"

namespace {

constexpr unsigned kSeed = 20260;
using Sound = std::vector<std::int16_t>;

/// What a take becomes, step by step.
std::vector<float> plainTake(const Sound& heard) {
    int peak = 0;
    for (const int sample : heard)
        peak = std::max(peak, sample < 0 ? -sample : sample);
    const float full = 32768.f;
    float gain = 1.f / full;
    if (peak >= 1) {
        gain = full / static_cast<float>(peak);
        gain = gain * (1.f / full);
    }
    std::vector<float> take;
    bool begun = false;
    for (const int sample : heard) {
        const float scaled = static_cast<float>(sample) * gain;
        begun = begun || scaled > 0.2;
        if (begun)
            take.push_back(scaled);
    }
    if (!begun) {
        for (const int sample : heard)
            take.push_back(static_cast<float>(sample) * gain);
    }
    return take;
}

class AudioTakeTest : public testing::Test, protected AudioTakeDelegate {
  protected:
    AudioTakeTest() {
        setenv("OMBRIX_DATA", m_folder.path().c_str(), 1);
        AudioDevices::use(m_device);
        m_place = std::make_unique<InstanceLock>(m_folder.path());
        m_unsaved = std::make_unique<UnsavedTake>(*m_place);
        m_take = std::make_unique<AudioTake>(m_instrument.waves(), m_unsaved.get());
        m_take->setDelegate(this);
    }
    void bubbleShown(const std::string& text) override { m_shown.push_back(text); }
    void bubbleDismissed() override { m_shown.emplace_back("gone"); }
    void alertShown(const std::string& title, const std::string& message,
                    const std::string& button) override {
        m_shown.push_back(title + "|" + message + "|" + button);
    }
    void takeMade(const std::shared_ptr<VornWaveSequence>&) override {
        m_shown.emplace_back("made");
    }
    void takeProblem(const std::string& line) override { m_shown.push_back(line); }

    /// In periods of many lengths. The device never calls again afterwards.
    void hear(const Sound& sound) {
        RenderWatch watch;
        for (std::size_t at = 0; at < sound.size();) {
            const std::size_t length =
                std::min<std::size_t>(1 + m_random() % 8192, sound.size() - at);
            m_device->capture(std::span(sound).subspan(at, length));
            at += length;
        }
        EXPECT_THAT(watch.violations(), testing::IsEmpty());
    }
    std::vector<float> voice(std::size_t index) const {
        const auto source = m_instrument.voices().synths[index]->waveSource();
        std::vector<float> samples(source ? source->sampleCount() : 0);
        if (source)
            source->write(source->sampleCount(), samples.data());
        return samples;
    }
    Sound noise(std::size_t frames, int loudest) {
        Sound sound(frames);
        for (auto& sample : sound)
            sample = static_cast<std::int16_t>(
                std::uniform_int_distribution(-loudest, loudest)(m_random));
        return sound;
    }

    ScratchFolder m_folder;
    ManualClock m_clock;
    std::mt19937 m_random{kSeed};
    std::shared_ptr<ManualDevice> m_device = std::make_shared<ManualDevice>();
    Instrument m_instrument{false};
    std::unique_ptr<InstanceLock> m_place;
    std::unique_ptr<UnsavedTake> m_unsaved;
    std::unique_ptr<AudioTake> m_take;
    std::vector<std::string> m_shown;
};

}  // namespace

TEST_F(AudioTakeTest, becomesTheSoundOfAllVoicesScaledAndTrimmed) {
    SCOPED_TRACE(kSeed);
    const Sound quiet = noise(3000, 700);
    for (const auto& [loud, end] : {std::pair(9000, 4000), {32767, 40000}, {1, 0}, {0, 10}}) {
        m_shown.clear();
        m_take->waveRecordDown();
        Sound heard = quiet;
        heard.push_back(static_cast<std::int16_t>(-loud - 1));
        const Sound rest = noise(static_cast<std::size_t>(end), loud);
        heard.insert(heard.end(), rest.begin(), rest.end());
        if (loud == 0)
            heard.assign(5000, 0);
        hear(heard);
        m_clock.pass(2);
        m_take->waveRecordUp();
        EXPECT_THAT(m_shown,
                    testing::ElementsAre("gone", "  00:00  ", "00:01", "00:02", "gone", "made"));
        const auto expected = plainTake(heard);
        for (const std::size_t index : {0u, 11u})
            EXPECT_EQ(voice(index), expected);
        EXPECT_FALSE(m_instrument.waves().currentWaveFilename());
        EXPECT_TRUE(std::filesystem::exists(WaveChoice::temporaryRecordingFile()));
        EXPECT_EQ(WaveChoice::load(m_unsaved->path()).wave->sampleCount(), expected.size());
    }
}

TEST_F(AudioTakeTest, endsAfterThirtySecondsAndNeverHoldsMore) {
    m_take->waveRecordDown();
    hear(Sound(1400000, 100));
    m_clock.pass(29);
    EXPECT_EQ(m_shown.back(), "00:29");
    EXPECT_TRUE(m_take->recording());
    m_clock.pass(1);
    EXPECT_FALSE(m_take->recording());
    EXPECT_EQ(m_shown.back(), "made");
    EXPECT_EQ(voice(3), std::vector<float>(1323000, 1.f));
    m_shown.clear();
    m_clock.pass(2);
    EXPECT_THAT(m_shown, testing::IsEmpty());
}

TEST_F(AudioTakeTest, ofADeviceThatNeverCallsChangesNothing) {
    const std::vector<float> before{0.25f, 0.5f};
    m_instrument.waves().use(
        {VornWave2::initWithCopyOfData(before.data(), 2, StreamDescription::float32(1), "Old"),
         "old.wav", "", "", ""});
    m_take->waveRecordDown();
    m_take->waveRecordUp();
    EXPECT_EQ(m_shown.back(),
              "No Audio Recorded|To record audio to use as a new instrument, hold the microphone "
              "button down, and release it to end recording.|OK");
    EXPECT_EQ(voice(0), before);
    EXPECT_EQ(m_instrument.waves().currentWaveFilename(), "old.wav");
    EXPECT_FALSE(std::filesystem::exists(WaveChoice::temporaryRecordingFile()));
    m_take->waveRecordDown();  // and a record that is dropped in the middle is not called any more
    m_take.reset();
    hear(Sound(100, 1));
}

TEST_F(AudioTakeTest, isUntouchedWhileArmedAfterItsEndAndByCyclesThatAreTooLong) {
    RecordingAudioData record(Vornery::sharedInstance().hardware());
    const auto cycle = [&](std::uint32_t frames) {
        AudioUnitRenderActionFlags flags = 0;
        const AudioTimeStamp time;
        EXPECT_EQ(RecordingAudioData::input(&record, &flags, &time, 1, frames, nullptr), noErr);
        return record.sampleCount.load();
    };
    EXPECT_EQ(cycle(100), 100u);
    EXPECT_EQ(record.peak, 0);
    record.state = RecordingAudioData::capturing;
    EXPECT_EQ(cycle(44101), 100u);
    EXPECT_EQ(cycle(44100), 44200u);
    record.state = RecordingAudioData::stopRequested;
    EXPECT_EQ(cycle(10), 44200u);
    EXPECT_EQ(record.state, RecordingAudioData::stopped);
    EXPECT_EQ(cycle(10), 44200u);
    EXPECT_EQ(RecordingAudioData::input(nullptr, nullptr, nullptr, 1, 10, nullptr), noErr);
}
