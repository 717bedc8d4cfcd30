#include "screens/WaveHearing.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <limits>
#include <random>
#include <thread>

#include "ManualClock.h"
#include "RenderWatch.h"
#include "ScratchFolder.h"
#include "SoundFiles.h"
#include "VornWaveSequence.h"
#include "audiounits/devices/AudioDevices.h"
#include "audiounits/devices/ClockDevice.h"
#include "audiounits/devices/ManualDevice.h"
#include "recording/Performance.h"
#include "startup/Instrument.h"

namespace {

using testing::IsEmpty;
using Heard = std::vector<std::int16_t>;

constexpr int kLength = 10000;
constexpr int kPeriod = 512;

/// Frame i is heard as the number i + 1.
WaveHearing::Sound countingSound() {
    std::vector<float> samples(kLength);
    for (int i = 0; i < kLength; ++i)
        samples[std::size_t(i)] = float(i + 1) / (32768.f * WaveHearing::kGain);
    return VornWaveSequence::sequenceWithWave(VornWave2::initWithCopyOfData(
        samples.data(), kLength, StreamDescription::float32(1), "counting"));
}

Heard counting(int from, int to) {
    Heard frames;
    for (int i = from; i < to; ++i)
        frames.push_back(std::int16_t(i + 1));
    return frames;
}

class WaveHearingTest : public testing::Test {
  protected:
    WaveHearingTest() {
        setenv("OMBRIX_DATA", m_folder.path().c_str(), 1);
        AudioDevices::use(m_device);
        m_instrument.waves().setWaveTo(WaveChoice::defaultSoundFile());
        m_instrument.play();
        m_hearing.setSound(countingSound());
        m_selection.reset(kLength);
    }
    /// One period of the device, in its time.
    Heard render() {
        Heard out(kPeriod);
        m_device->render(out);
        m_clock.step(kPeriod / 44100.0);
        return out;
    }
    /// All that is heard until it ends, without the silence behind.
    Heard playOut() {
        Heard all;
        double before = m_hearing.playHead();
        double longestStep = 0;
        while (m_hearing.playing() && all.size() < 2 * kLength) {
            const Heard more = render();
            all.insert(all.end(), more.begin(), more.end());
            if (!m_hearing.playing())
                break;
            EXPECT_GE(m_hearing.playHead(), before);
            longestStep = std::max(longestStep, m_hearing.playHead() - before);
            before = m_hearing.playHead();
        }
        EXPECT_LE(longestStep, 2 * kPeriod) << "it moves evenly";
        while (!all.empty() && all.back() == 0)
            all.pop_back();
        return all;
    }

    ScratchFolder m_folder;
    ManualClock m_clock;
    std::shared_ptr<ManualDevice> m_device = std::make_shared<ManualDevice>();
    Instrument m_instrument{false};
    WaveSelection m_selection;
    WaveHearing m_hearing{&m_selection};
};

}  // namespace

TEST_F(WaveHearingTest, playsFromTheFrameToTheEndThatIsMeant) {
    m_selection.select(5000, 2000);
    struct Case {
        int from, to, end;
    };
    for (const Case& the : {
             Case{3000, -1, 5000},            // within the selected part
             Case{1999, -1, kLength},         // before it
             Case{5000, -1, kLength},         // behind its last frame
             Case{1000, 1500, 1500},          // as asked
             Case{-5, 2 * kLength, kLength},  // outside
         }) {
        SCOPED_TRACE(the.from);
        RenderWatch watch;
        m_hearing.playFrom(the.from, the.to);
        EXPECT_EQ(m_hearing.playHead(), std::max(the.from, 0)) << "at once";
        EXPECT_EQ(playOut(), counting(std::max(the.from, 0), the.end));
        EXPECT_LT(m_hearing.playHead(), 0);
        EXPECT_THAT(watch.violations(), IsEmpty());
    }
    m_clock.pass(2);
    EXPECT_EQ(RunLoop::main().nextDue(), std::numeric_limits<double>::infinity());
    m_hearing.playFrom(kLength);
    EXPECT_FALSE(m_hearing.playing());
}

TEST_F(WaveHearingTest, movesWhilePlayingAndEndsWithItsSound) {
    m_hearing.playFrom(100);
    render();
    render();
    m_hearing.playFrom(7000);
    EXPECT_EQ(m_hearing.playHead(), 7000);
    EXPECT_EQ(render(), counting(7000, 7000 + kPeriod));
    m_clock.step(1.0);  // a device that stands still
    EXPECT_LE(m_hearing.playHead(), 7000 + kPeriod);
    EXPECT_TRUE(m_hearing.playing());
    m_hearing.setSound(countingSound());
    EXPECT_FALSE(m_hearing.playing());
    EXPECT_EQ(render(), Heard(kPeriod, 0));
    m_hearing.setSound(nullptr);
    m_hearing.playFrom(0);
    m_hearing.scrubTo(0);
    m_hearing.endScrub();
    EXPECT_EQ(render(), Heard(kPeriod, 0));
}

TEST_F(WaveHearingTest, scrubbingIsHeardAtTheFingerAndFadesBehindIt) {
    m_hearing.playFrom(100);
    render();
    m_hearing.scrubTo(5000);
    EXPECT_FALSE(m_hearing.playing());
    EXPECT_EQ(m_hearing.playHead(), 5000);
    Heard heard;
    for (int i = 0; i < 6; ++i) {
        const Heard more = render();
        heard.insert(heard.end(), more.begin(), more.end());
    }
    const auto loudest = std::max_element(heard.begin(), heard.end());
    EXPECT_NEAR(*loudest, 5000, 10) << "full level at the finger's place";
    m_hearing.scrubTo(kLength + 7);
    EXPECT_EQ(m_hearing.playHead(), kLength - 1);
    m_hearing.scrubTo(7000);
    m_hearing.endScrub();
    EXPECT_LT(m_hearing.playHead(), 0);
    for (int i = 0; i < 22; ++i) {
        const Heard more = render();
        heard.insert(heard.end(), more.begin(), more.end());
    }
    for (std::size_t i = 1; i < heard.size(); ++i)
        ASSERT_LT(std::abs(heard[i] - heard[i - 1]), 12) << i << ": it never breaks off";
    EXPECT_EQ(heard.back(), 0);
    EXPECT_GT(*std::max_element(heard.begin(), heard.end()), 6900);
}

TEST_F(WaveHearingTest, aHeldNoteAndItsRecordingSurviveTheFirstAudition) {
    Performance performance(m_instrument.notes(), m_instrument.recordingUnit());
    performance.toolbarRecordClicked();
    m_instrument.notes().tinkleIvory(48);
    Heard played;
    const auto play = [&](int periods) {
        for (int i = 0; i < periods; ++i) {
            const Heard more = render();
            played.insert(played.end(), more.begin(), more.end());
        }
    };
    play(8);
    m_hearing.playFrom(1000, 3000);
    play(8);
    performance.toolbarRecordClicked();
    const Heard recorded = SoundFiles::samplesOf(performance.recordingPerformanceLastFilename());
    ASSERT_EQ(recorded.size(), played.size());
    const Heard heard = counting(1000, 3000);
    int loud = 0;
    for (std::size_t i = 0; i < played.size(); ++i) {
        const std::size_t at = i - 8 * kPeriod;
        const int beside = at < heard.size() ? heard[at] : 0;
        ASSERT_EQ(played[i], std::clamp(recorded[i] + beside, -32768, 32767)) << i;
        loud += std::abs(recorded[i]) > 100;
    }
    EXPECT_GT(loud, int(played.size() / 4)) << "the note sounds all the while";
}

// With a device of its own time, for sanitizers to look at.
TEST(WaveHearing, soundsGoWhenNobodyReadsThemAnyMore) {
    AudioDevices::use(std::make_shared<ClockDevice>(64));
    Instrument instrument;
    instrument.play();
    WaveHearing hearing;
    std::vector<std::weak_ptr<WaveSequenceAccess>> sounds;
    std::mt19937 random(5);
    for (int i = 0; i < 200; ++i) {
        const auto sound = countingSound();
        sounds.push_back(sound);
        hearing.setSound(sound);
        for (int j = 0; j < 3; ++j) {
            const int frame = int(random() % kLength);
            if (random() % 2)
                hearing.playFrom(frame, int(random() % kLength));
            else
                hearing.scrubTo(frame);
            std::this_thread::sleep_for(std::chrono::microseconds(random() % 1500));
            RunLoop::main().turn();
        }
    }
    hearing.setSound(nullptr);
    const auto gone = [&] {
        return std::ranges::all_of(sounds, [](const auto& sound) { return sound.expired(); });
    };
    for (int i = 0; i < 2000 && !gone(); ++i) {
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
        RunLoop::main().turn();
    }
    EXPECT_TRUE(gone());
}
