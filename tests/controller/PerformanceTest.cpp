#include "recording/Performance.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <set>

#include "Contents.h"
#include "ForeignReaders.h"
#include "ManualClock.h"
#include "ScratchFolder.h"
#include "SoundFiles.h"
#include "audiounits/devices/AudioDevices.h"
#include "audiounits/devices/ManualDevice.h"
#include "midi/MidiTimeline.h"
#include "recording/PerformanceName.h"
#include "startup/Instrument.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using Sound = std::vector<std::int16_t>;

class PerformanceTest : public testing::Test, protected PerformanceDelegate {
  protected:
    PerformanceTest() {
        setenv("OMBRIX_DATA", m_folder.path().c_str(), 1);
        setenv("LC_ALL", "en_US.UTF-8", 1);
        setenv("TZ", "UTC", 1);
        AudioDevices::use(m_device);
        m_instrument.waves().setWaveTo(WaveChoice::defaultSoundFile());
        m_instrument.play();
        m_performance.setDelegate(this);
    }
    void buttonTitleChanged(const std::string& title) override { m_shown.push_back(title); }
    void accessibleAnnounce(const std::string& text) override { m_shown.push_back(text); }
    void performanceComplete(const std::string&) override { m_shown.emplace_back("complete"); }
    void performanceProblem(const std::string& line) override {
        m_shown.push_back("problem: " + line);
    }

    Sound play(std::size_t frames) {
        Sound sound(frames);
        m_device->render(sound);
        return sound;
    }
    void key(bool down) {
        if (down)
            m_instrument.notes().tinkleIvory(48);
        else
            m_instrument.notes().untinkleIvory(48);
    }
    std::vector<std::string> shown() { return std::exchange(m_shown, {}); }

    ScratchFolder m_folder;
    ManualClock m_clock;
    std::shared_ptr<ManualDevice> m_device = std::make_shared<ManualDevice>();
    Instrument m_instrument{false};
    Performance m_performance{m_instrument.notes(), m_instrument.recordingUnit()};
    std::vector<std::string> m_shown;
};

}  // namespace

TEST_F(PerformanceTest, isWhatTheDevicePlaysFromTheFirstKeyToTheEnd) {
    key(true);
    key(false);
    m_performance.toolbarRecordClicked();
    EXPECT_THAT(shown(), ElementsAre("Waiting...", "Waiting to record."));
    play(5000);
    m_clock.pass(40);
    key(true);
    Sound heard = play(8000);
    m_clock.pass(2);
    key(false);
    for (int i = 0; i < 10; ++i) {
        const Sound more = play(777);
        heard.insert(heard.end(), more.begin(), more.end());
    }
    m_performance.toolbarRecordClicked();
    play(1000);
    EXPECT_EQ(SoundFiles::samplesOf(m_performance.recordingPerformanceLastFilename()), heard);
    EXPECT_THAT(shown(), ElementsAre("00:00", "00:01", "00:02", "complete", "Record"));
    EXPECT_EQ(m_performance.recordingPerformance(), Performance::State::finished);
    m_clock.pass(3);
    EXPECT_EQ(m_performance.recordingPerformance(), Performance::State::idle);
    EXPECT_THAT(shown(), testing::IsEmpty());
}

TEST_F(PerformanceTest, isCancelledBeforeTheFirstKey) {
    m_performance.toolbarRecordClicked();
    m_performance.toolbarRecordClicked();
    EXPECT_THAT(shown(),
                ElementsAre("Waiting...", "Waiting to record.", "Record cancelled.", "Record"));
    key(true);
    m_clock.pass(2);
    EXPECT_THAT(shown(), testing::IsEmpty());
    EXPECT_TRUE(std::filesystem::is_empty(m_folder.path()));
}

TEST_F(PerformanceTest, endsThirtySecondsAfterTheLastKey) {
    m_performance.toolbarRecordClicked();
    key(true);
    m_clock.pass(29);
    key(false);
    m_clock.pass(29);
    EXPECT_EQ(shown().back(), "00:58");
    m_clock.pass(1);
    EXPECT_THAT(shown(), ElementsAre("complete", "Record"));
    EXPECT_EQ(m_performance.recordingPerformance(), Performance::State::idle);
}

TEST_F(PerformanceTest, neverTakesAnothersName) {
    EXPECT_EQ(PerformanceName::of(" 1/2\\3, 4:05 PM\n"), "Recorded Live - 1-2-3, 4-05 PM.wav");
    std::ofstream(m_folder.file("Recorded Live - Nov 27, 2025, 6-05 PM 2.wav")) << "dear";
    for (const char* name : {"Recorded Live - Nov 27, 2025, 6-05 PM.wav",
                             "Recorded Live - Nov 27, 2025, 6-05 PM 3.wav"}) {
        m_performance.toolbarRecordClicked();
        key(true);
        play(100);
        m_performance.toolbarRecordClicked();
        m_performance.toolbarRecordClicked();  // within the second that the end is shown
        key(false);
        EXPECT_EQ(m_performance.recordingPerformanceLastFilename(), m_folder.file(name));
    }
    EXPECT_EQ(
        std::filesystem::file_size(m_folder.file("Recorded Live - Nov 27, 2025, 6-05 PM 2.wav")),
        4u);
}

TEST_F(PerformanceTest, keepsItsNotesBesideItWhereTheyAreHeard) {
    m_performance.toolbarRecordClicked();
    Notes& notes = m_instrument.notes();
    std::mt19937 random(11);
    std::vector<MidiTimelineEvent> played;
    std::set<int> held;
    std::uint64_t frame = 0;
    const auto release = [&](int key) {
        if (held.erase(key))
            played.push_back({frame, false, std::uint8_t(key + kLowestMidiNote), 0});
    };
    for (int i = 0; i < 400; ++i) {
        const int key = 40 + int(random() % 20);  // more than there are voices
        const auto note = std::uint8_t(key + kLowestMidiNote);
        if (random() % 3) {
            const auto velocity = std::uint8_t(random() % 4 ? 1 + random() % 127 : 127);
            if (notes.triggeredNoteUnits()[std::size_t(key)] == -1) {
                release(key);  // its voice was taken by another key
                held.insert(key);
                played.push_back({frame, true, note, velocity});
            }
            velocity == 127 ? notes.tinkleIvory(key) : notes.midiNoteDown(note, velocity);
        } else {
            release(key);
            random() % 2 ? notes.untinkleIvory(key) : notes.midiNoteUp(note);
        }
        const std::size_t frames = random() % 3 ? random() % 2000 : 0;
        play(frames);
        frame += m_instrument.recordingUnit().recording() ? frames : 0;
    }
    m_performance.toolbarRecordClicked();
    for (const int key : std::set(held))
        release(key);

    const std::string path = m_performance.notesFilename();
    EXPECT_EQ(path, std::filesystem::path(m_performance.recordingPerformanceLastFilename())
                        .replace_extension("mid"));
    std::string error;
    const auto file = MidiFile::read(path, error);
    ASSERT_TRUE(file) << error;
    const auto read = MidiTimeline::make(*file, error);
    ASSERT_TRUE(read) << error;
    const auto lines = ForeignReaders::readMidi(path);
    ASSERT_EQ(read->events.size(), played.size());
    ASSERT_EQ(lines.size(), played.size() + 1);
    for (std::size_t i = 0; i < played.size(); ++i) {
        MidiTimelineEvent event = read->events[i];
        EXPECT_NEAR(double(event.frame), double(played[i].frame), 13);  // half a tick, and rounding
        event.frame = played[i].frame;
        event.velocity = event.on ? event.velocity : 0;
        EXPECT_EQ(event, played[i]) << "event " << i;
        const std::string words = std::string(played[i].on ? " on " : " off ") +
                                  std::to_string(played[i].key) + ' ' +
                                  std::to_string(played[i].on ? played[i].velocity : 64);
        EXPECT_THAT(lines[i], testing::EndsWith(words));
        EXPECT_NEAR(std::stod(lines[i]), double(played[i].frame) / 44100, 0.001);
    }
    EXPECT_NEAR(std::stod(lines.back()), double(frame) / 44100, 0.001);
}

TEST_F(PerformanceTest, hasItsNotesOnDiskBeforeItEndsAndReplacesNone) {
    std::ofstream(m_folder.file("Recorded Live - Nov 27, 2025, 6-05 PM.mid")) << "dear";
    m_performance.toolbarRecordClicked();
    key(true);
    play(4410);
    EXPECT_EQ(m_performance.recordingPerformanceLastFilename(),
              m_folder.file("Recorded Live - Nov 27, 2025, 6-05 PM 2.wav"));
    m_clock.pass(2);
    const std::string path = m_folder.file("Recorded Live - Nov 27, 2025, 6-05 PM 2.mid");
    for (int i = 0; i < 2000 && !std::filesystem::exists(path); ++i)
        usleep(10000);  // the writer is a thread of its own
    EXPECT_THAT(ForeignReaders::readMidi(path),
                ElementsAre("0.0000 on 69 127", "0.1000 off 69 64", "0.1000 end"));
    // It cannot be written any more: said once, and the sound is kept.
    key(false);
    play(4410);
    std::filesystem::remove(path);
    std::filesystem::create_directory(path);
    m_shown.clear();
    m_performance.toolbarRecordClicked();
    EXPECT_THAT(shown(), ElementsAre(HasSubstr("problem: " + path), "complete", "Record"));
    EXPECT_EQ(m_performance.notesFilename(), path);
    EXPECT_EQ(SoundFiles::samplesOf(m_performance.recordingPerformanceLastFilename()).size(),
              8820u);
    EXPECT_EQ(contentsOf(m_folder.file("Recorded Live - Nov 27, 2025, 6-05 PM.mid")), "dear");
}

TEST_F(PerformanceTest, keepsWhatFittedAndSaysSoInOneLine) {
    const rlimit limit{40000, 40000};
    std::signal(SIGXFSZ, SIG_IGN);
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
    m_performance.toolbarRecordClicked();
    key(true);
    Sound heard;
    bool problem = false;
    for (int i = 0; i < 1000 && !problem; ++i) {
        const Sound more = play(4000);
        heard.insert(heard.end(), more.begin(), more.end());
        usleep(10000);  // the writer is a thread of its own
        problem = !m_instrument.recordingUnit().report().problem.empty();
    }
    ASSERT_TRUE(problem);
    m_shown.clear();
    m_clock.pass(1);
    EXPECT_THAT(shown(), ElementsAre(HasSubstr("problem: " + m_folder.path().string()), "complete",
                                     "Record"));
    const Sound kept = SoundFiles::samplesOf(m_performance.recordingPerformanceLastFilename());
    EXPECT_GT(kept.size(), 15000u);
    heard.resize(kept.size());
    EXPECT_EQ(kept, heard);
}

TEST_F(PerformanceTest, thatCannotBeWrittenIsNotBegun) {
    setenv("OMBRIX_DATA", "/dev/null/data", 1);
    m_performance.toolbarRecordClicked();
    m_shown.clear();
    key(true);
    m_clock.pass(2);
    EXPECT_THAT(shown(), ElementsAre("Record", HasSubstr("/dev/null/data")));
    EXPECT_EQ(m_performance.recordingPerformance(), Performance::State::idle);
}
