#include "recording/Performance.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "ManualClock.h"
#include "ScratchFolder.h"
#include "audiounits/devices/AudioDevices.h"
#include "audiounits/devices/ManualDevice.h"
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
    static Sound contents(const std::string& path) {
        std::ifstream file(path, std::ios::binary);
        const std::string bytes(std::istreambuf_iterator<char>(file), {});
        EXPECT_GE(bytes.size(), 44u);
        Sound sound((bytes.size() - 44) / 2);
        std::copy_n(bytes.data() + 44, sound.size() * 2, reinterpret_cast<char*>(sound.data()));
        return sound;
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
    EXPECT_EQ(contents(m_performance.recordingPerformanceLastFilename()), heard);
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
    const Sound kept = contents(m_performance.recordingPerformanceLastFilename());
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
