#include "notes/Notes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <random>
#include <set>

#include "audiounits/RenderScope.h"
#include "log/Log.h"
#include "runloop/Clock.h"

namespace {

/// Every answer is later than the one before.
class TickingClock : public TimeSource {
  public:
    TickingClock() { Clock::setSource(this); }
    ~TickingClock() override { Clock::setSource(nullptr); }
    double now() noexcept override { return m_now += 0.001; }

  private:
    double m_now = 1;
};

class NotesTest : public testing::Test {
  protected:
    NotesTest() {
        for (unsigned i = 0; i < kVoiceCount; ++i) {
            m_voices.synths[i] = std::make_unique<GrainSynthesiser>(nullptr);
            m_voices.envelopes[i] = std::make_unique<ADSRShaper>();
            m_voices.envelopes[i]->setUpstreamUnit(*m_voices.synths[i]);
            m_voices.envelopes[i]->setTriggerTarget(m_voices.synths[i].get());
            m_voices.envelopes[i]->setSettings({0, 0, 1, 0.02f});
            m_voices.synths[i]->note()->stopOnUntrigger = 2;
        }
        Log::clear();
    }

    int stage(std::size_t voice) const { return m_voices.envelopes[voice]->state().triggered; }
    int voiceOf(int key) const {
        return m_notes.triggeredNoteUnits()[static_cast<std::size_t>(key)];
    }
    void render(std::uint32_t frames) {
        const RenderScope scope;
        std::array<float, 1024> samples{};
        for (const auto& envelope : m_voices.envelopes) {
            auto list = AudioBufferList::single(samples.data(), 1, frames * 4);
            AudioUnitRenderActionFlags flags = 0;
            const AudioTimeStamp time;
            const auto* callback = envelope->callback();
            callback->inputProc(callback->inputProcRefCon, &flags, &time, 0, frames, &list);
        }
    }
    void holdTwelve() {
        for (int key = 0; key < 12; ++key)
            m_notes.tinkleIvory(key);
    }

    TickingClock m_clock;
    Voices m_voices;
    Notes m_notes{m_voices};
};

}  // namespace

TEST_F(NotesTest, tunesTheKeysInEqualTemperament) {
    const auto& pitch = m_notes.noteFrequencies();
    EXPECT_EQ(pitch[0], 27.5f);
    EXPECT_EQ(pitch[12], 55.f);
    EXPECT_EQ(pitch[48], 440.f);
    EXPECT_NEAR(pitch[87], 4186.01, 0.01);
}

TEST_F(NotesTest, aHeldKeyKeepsItsVoiceAndGain) {
    m_notes.tinkleIvory(48, 0.25f);
    m_notes.tinkleIvory(48, 1.f);
    EXPECT_EQ(voiceOf(48), 0);
    EXPECT_EQ(m_voices.synths[0]->note()->gain, 0.25f);
    EXPECT_EQ(stage(1), 0);
    m_notes.untinkleIvory(48);
    m_notes.untinkleIvory(48);
    EXPECT_EQ(voiceOf(48), -1);
    EXPECT_EQ(stage(0), 2);
}

TEST_F(NotesTest, theThirteenthKeyTakesTheOldestVoice) {
    holdTwelve();
    m_notes.tinkleIvory(40);
    EXPECT_EQ(voiceOf(40), 0);
    EXPECT_EQ(voiceOf(0), -1);
    EXPECT_THAT(Log::lines(), testing::ElementsAre("Force-untriggered [0] 0"));
    m_notes.untinkleIvory(0);
    EXPECT_EQ(stage(0), 1) << "the key that lost its voice no longer ends it";
}

TEST_F(NotesTest, aReleasingVoiceIsTakenBeforeAnySoundingOne) {
    holdTwelve();
    m_notes.untinkleIvory(7);
    m_notes.untinkleIvory(3);
    m_notes.tinkleIvory(50);
    EXPECT_EQ(voiceOf(50), 3) << "of two releasing ones the one triggered first";
    m_notes.tinkleIvory(51);
    EXPECT_EQ(voiceOf(51), 7);
    EXPECT_THAT(Log::lines(), testing::IsEmpty());
}

TEST_F(NotesTest, midiReachesTheKeysAndNothingBeyondThem) {
    struct Screen : NotesDelegate {
        void keyTouched(bool) override { ++touched; }
        void keyShown(int key, bool on) override { shown.emplace_back(key, on); }
        int touched = 0;
        std::vector<std::pair<int, bool>> shown;
    } screen;
    m_notes.addDelegate(screen);
    m_notes.midiNoteDown(21, 127);
    EXPECT_EQ(voiceOf(0), 0);
    EXPECT_EQ(m_voices.synths[0]->note()->frequency, 27.5f);
    EXPECT_EQ(m_voices.synths[0]->note()->gain, 1.f);
    for (const std::uint8_t outside : std::initializer_list<std::uint8_t>{0, 20, 109, 255}) {
        m_notes.midiNoteDown(outside, 100);
        m_notes.midiNoteUp(outside);
    }
    m_notes.midiNoteDown(108, 1);
    m_notes.midiNoteDown(21, 0);
    m_notes.midiNoteUp(108);
    EXPECT_EQ(stage(0), 2);
    EXPECT_EQ(stage(1), 2);
    using Shown = std::pair<int, bool>;
    EXPECT_THAT(screen.shown, testing::ElementsAre(Shown(0, true), Shown(87, true), Shown(0, false),
                                                   Shown(87, false)));
    EXPECT_EQ(screen.touched, 4);
    m_notes.removeDelegate(screen);
    m_notes.midiNoteDown(60, 1);
}

TEST_F(NotesTest, survivesKeyStormsWithoutStuckOrSharedVoices) {
    constexpr unsigned kSeed = 20240611;
    std::mt19937 random(kSeed);
    SCOPED_TRACE(kSeed);
    for (int turn = 0; turn < 20000; ++turn) {
        const int key = static_cast<int>(random() % 88);
        if (random() % 2)
            m_notes.tinkleIvory(key, 0.5f);
        else
            m_notes.untinkleIvory(key);
        if (random() % 4 == 0)
            render(static_cast<std::uint32_t>(1 + random() % 1000));
        std::set<int> used;
        for (const int voice : m_notes.triggeredNoteUnits()) {
            if (voice == -1)
                continue;
            ASSERT_TRUE(used.insert(voice).second) << "two keys on one voice";
            ASSERT_EQ(stage(static_cast<std::size_t>(voice)), 1);
        }
        for (std::size_t voice = 0; voice < kVoiceCount; ++voice)
            ASSERT_EQ(stage(voice) == 1, used.contains(static_cast<int>(voice))) << "stuck";
    }
    m_notes.releaseAll();
    render(1000);
    for (std::size_t voice = 0; voice < kVoiceCount; ++voice)
        EXPECT_EQ(stage(voice), 0);
}
