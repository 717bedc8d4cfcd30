#include "startup/Instrument.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <optional>
#include <random>

#include "PlainInstrument.h"
#include "RandomSource.h"
#include "RenderWatch.h"
#include "ScratchFolder.h"
#include "audiounits/RenderScope.h"
#include "audiounits/devices/AudioDevices.h"
#include "audiounits/devices/ManualDevice.h"
#include "files/VornAudioFile.h"
#include "graph/Vornery.h"
#include "log/Log.h"

namespace {

constexpr unsigned kSeed = 31337;

std::vector<float> soundOf(std::uint32_t frames) {
    std::vector<float> sound(frames);
    for (std::uint32_t i = 0; i < frames; ++i)
        sound[i] = 0.7f * std::sin(static_cast<float>(i) * 0.04f) +
                   0.2f * std::sin(static_cast<float>(i) * 0.0171f);
    return sound;
}

/// Every parameter somewhere in its range.
Preset randomPreset(std::mt19937& random) {
    const auto between = [&](float low, float high) {
        return std::uniform_real_distribution<float>(low, high)(random);
    };
    Preset preset;
    for (const Parameter& row : kParameters) {
        if (row.kind == ParameterKind::number)
            preset.setNumber(row.id, between(row.stored.low, row.stored.high));
    }
    // Short enough for a test to hear the end of them.
    for (const auto id : {ParameterId::adsrAttack, ParameterId::adsrDecay, ParameterId::adsrRelease,
                          ParameterId::echoDelay})
        preset.setNumber(id, between(0.f, 0.2f));
    preset.syncSpeed = random() % 2;
    preset.grainMotion = static_cast<std::int32_t>(random() % 7);
    return preset;
}

class InstrumentTest : public testing::Test {
  protected:
    InstrumentTest() { AudioDevices::use(m_device); }

    void playSound(const std::vector<float>& samples) {
        m_sound.wave = VornWave2::initWithCopyOfData(samples.data(),
                                                     static_cast<std::uint32_t>(samples.size()),
                                                     StreamDescription::float32(1), "Test");
        m_instrument.waves().use(m_sound);
    }
    std::vector<std::int16_t> render(std::uint32_t frames) {
        std::vector<std::int16_t> out(frames);
        m_device->render(out);
        return out;
    }

    std::shared_ptr<ManualDevice> m_device = std::make_shared<ManualDevice>();
    Instrument m_instrument;
    WaveChoice::Loaded m_sound;
    std::mt19937 m_random{kSeed};
};

constexpr ParameterId kEffects[] = {
    ParameterId::ringModFrequency, ParameterId::ringModDepth, ParameterId::filterCutoff,
    ParameterId::filterResonance,  ParameterId::filterBass,   ParameterId::distortion,
    ParameterId::echoDelay,        ParameterId::echoFeedback,
};

/// Ours and the plain one under the same random playing, sample by sample: notes, then a silence
/// that is long enough for all to be skipped, and other effects behind it.
class SameAsPlain : public InstrumentTest, public testing::WithParamInterface<std::uint32_t> {
  protected:
    void playRandomly();

  private:
    void changeEffects();
    void playNotes();
    void expectSame(std::uint32_t frames);

    const std::vector<float> m_samples = soundOf(30000);
    std::optional<PlainInstrument> m_plain;
};

/// The same with the final mixer that places its bus in space, where that starts.
class SameInSpace : public SameAsPlain {
  protected:
    static void SetUpTestSuite() { Vornery::set3DMixerDesired(true); }
};

}  // namespace

void SameAsPlain::playRandomly() {
    SCOPED_TRACE(kSeed);
    playSound(m_samples);
    Preset preset = randomPreset(m_random);
    preset.setNumber(ParameterId::distortion, 0.4f);
    m_instrument.updateSettingsFromPreset(preset);
    m_plain.emplace(m_samples, preset);
    RandomSource::seed(kSeed);
    srandom(kSeed);
    m_instrument.play();
    for (int phrase = 0; phrase < 3 && !HasFatalFailure(); ++phrase) {
        playNotes();
        for (int key = 20; key < 70; ++key) {
            m_instrument.notes().untinkleIvory(key);
            m_plain->noteOff(key);
        }
        changeEffects();
        expectSame(30000);
    }
}

/// To some that leave a silence soon.
void SameAsPlain::changeEffects() {
    Preset preset = randomPreset(m_random);
    preset.setNumber(ParameterId::echoFeedback, 0.f);
    if (m_random() % 2)
        preset.setNumber(ParameterId::filterResonance, 0.f);
    for (const ParameterId id : kEffects)
        m_instrument.setParameter(id, preset.number(id));
    m_plain->setEffects(preset);
}

void SameAsPlain::playNotes() {
    for (int note = 0; note < 40 && !HasFatalFailure(); ++note) {
        const int key = 20 + static_cast<int>(m_random() % 50);
        if (m_random() % 3) {
            const auto velocity = static_cast<std::uint8_t>(1 + m_random() % 127);
            m_instrument.notes().midiNoteDown(static_cast<std::uint8_t>(key + 21), velocity);
            m_plain->noteOn(key, velocity);
        } else {
            m_instrument.notes().midiNoteUp(static_cast<std::uint8_t>(key + 21));
            m_plain->noteOff(key);
        }
        expectSame(700);
    }
}

void SameAsPlain::expectSame(std::uint32_t frames) {
    std::vector<std::int16_t> expected;
    for (std::uint32_t frame = 0; frame < frames; frame += GetParam()) {
        const auto got = render(GetParam());
        {
            const RenderScope scope;
            expected = m_plain->render(GetParam());
        }
        for (std::size_t k = 0; k < got.size(); ++k)
            ASSERT_NEAR(got[k], expected[k], 1) << "frame " << frame + k;
    }
}

TEST_P(SameAsPlain, throughRandomPlaying) {
    playRandomly();
}

TEST_P(SameInSpace, throughRandomPlaying) {
    playRandomly();
}

INSTANTIATE_TEST_SUITE_P(Buffers, SameInSpace, testing::Values(441));
INSTANTIATE_TEST_SUITE_P(Buffers, SameAsPlain, testing::Values(1, 7, 64, 441, 512, 1023, 8192));

TEST_F(InstrumentTest, doesNothingForbiddenWhileItRenders) {
    if (!RenderWatch::working())
        GTEST_SKIP() << "a sanitizer watches in its own way";
    playSound(soundOf(5000));
    m_instrument.play();
    std::vector<std::int16_t> out(8192);
    const ScratchFolder folder;
    m_instrument.recordingUnit().startRecordingTo(folder.file("a.wav"));
    const RenderWatch watch;
    for (int turn = 0; turn < 60; ++turn) {
        m_instrument.updateSettingsFromPreset(randomPreset(m_random));
        for (int key = 0; key < 14; ++key)
            m_instrument.notes().midiNoteDown(static_cast<std::uint8_t>(30 + m_random() % 60), 90);
        m_device->render(std::span(out).first(1 + m_random() % 8192));
        m_instrument.notes().releaseAll();
        m_device->render(std::span(out).first(512));
    }
    EXPECT_EQ(watch.renders(), 120u);
    EXPECT_THAT(watch.violations(), testing::IsEmpty());
    m_instrument.recordingUnit().stopRecording();
}

TEST_F(InstrumentTest, startsWithTheSettingsThatEveryPresetBeginsFrom) {
    const Preset fresh = m_instrument.makePresetFromSettings();
    for (const Parameter& row : kParameters) {
        if (row.kind == ParameterKind::number) {
            EXPECT_EQ(fresh.number(row.id), row.storedInitial) << row.key;
        }
    }
    EXPECT_FALSE(fresh.syncSpeed);
    EXPECT_EQ(fresh.grainMotion, 1);
    EXPECT_FALSE(fresh.wave);
    EXPECT_EQ(m_instrument.converter().autoGainControl(), 0.5f);
    EXPECT_TRUE(m_instrument.converter().notifyClipping());
}

TEST_F(InstrumentTest, answersWithThePresetThatItWasGiven) {
    SCOPED_TRACE(kSeed);
    for (int turn = 0; turn < 50; ++turn) {
        Preset preset = randomPreset(m_random);
        m_instrument.updateSettingsFromPreset(preset);
        const Preset answer = m_instrument.makePresetFromSettings();
        for (const Parameter& row : kParameters) {
            if (row.kind != ParameterKind::number)
                continue;
            // Delay lines are whole frames long.
            const bool delay =
                row.id == ParameterId::echoDelay || row.id == ParameterId::filterBass;
            EXPECT_NEAR(answer.number(row.id), preset.number(row.id), delay ? 1 / 44100.0 : 0)
                << row.key;
        }
        EXPECT_EQ(answer.syncSpeed, preset.syncSpeed);
        EXPECT_EQ(answer.grainMotion, preset.grainMotion);
        for (const auto& envelope : m_instrument.voices().voiceEnvelopes)
            EXPECT_EQ(envelope->settings().attackTime, preset.number(ParameterId::adsrAttack));
    }
    Preset silent;
    m_instrument.updateSettingsFromPreset(silent);
    EXPECT_EQ(m_instrument.parameter(ParameterId::filterBass), kDefaultFilterBass);
}

TEST_F(InstrumentTest, silencesEverythingAtOnce) {
    playSound(soundOf(20000));
    m_instrument.setParameter(ParameterId::echoDelay, 0.1f);
    m_instrument.setParameter(ParameterId::echoFeedback, 1.f);
    m_instrument.setParameter(ParameterId::filterResonance, 0.9f);
    m_instrument.play();
    m_instrument.notes().midiNoteDown(60, 127);
    EXPECT_NE(render(8192), std::vector<std::int16_t>(8192, 0));
    m_instrument.silence();
    EXPECT_EQ(render(8192), std::vector<std::int16_t>(8192, 0));
    EXPECT_FALSE(m_instrument.keysSound());
}

TEST_F(InstrumentTest, recordsWhatIsHeard) {
    const ScratchFolder folder;
    playSound(soundOf(20000));
    m_instrument.play();
    m_instrument.recordingUnit().startRecordingTo(folder.file("a.wav"));
    std::vector<std::int16_t> heard = render(1000);  // silence is a part of it
    m_instrument.notes().midiNoteDown(60, 127);
    for (const std::int16_t sample : render(5000))
        heard.push_back(sample);
    m_instrument.recordingUnit().stopRecording();
    EXPECT_NE(heard.back(), 0);

    VornAudioFile file(folder.file("a.wav"));
    ASSERT_EQ(file.byteCount(), heard.size() * 2);
    std::vector<std::int16_t> written(heard.size());
    auto bytes = static_cast<std::uint32_t>(file.byteCount());
    EXPECT_TRUE(file.ReadIntoBuffer(written.data(), &bytes));
    EXPECT_EQ(written, heard);
}
