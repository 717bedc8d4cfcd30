// `ombrix take` and `ombrix play --record`: what they hear, and what becomes of it when the
// program, the device or the disk fails.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <set>
#include <thread>

#include "Contents.h"
#include "JackServer.h"
#include "PulseServer.h"
#include "SoundFiles.h"
#include "Tone.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;
using Words = std::vector<std::string>;

constexpr const char* kLeftOver = "-temporary-audio-recording-.tmp";
constexpr const char* kLock = ".running.lock";

class RecordingCommandsTest : public testing::Test {
  protected:
    RecordingCommandsTest() {
        setenv("OMBRIX_DATA", data("").c_str(), 1);
        // The A above middle C for two seconds.
        const unsigned char song[] = {'M', 'T', 'h',  'd',  0,    0,   0, 6, 0,    0,    0, 1,
                                      1,   224, 'M',  'T',  'r',  'k', 0, 0, 0,    13,   0, 0x90,
                                      69,  127, 0x8f, 0x00, 0x80, 69,  0, 0, 0xff, 0x2f, 0};
        std::ofstream(m_song, std::ios::binary)
            .write(reinterpret_cast<const char*>(song), sizeof song);
    }

    std::string data(const std::string& name) const { return m_folder.file("data/" + name); }
    std::set<std::string> names() const {
        std::set<std::string> found;
        for (const auto& entry : std::filesystem::directory_iterator(data("")))
            found.insert(entry.path().filename());
        return found;
    }
    /// What the program said since the last call.
    std::string said() {
        const std::string all = contentsOf(m_log);
        std::filesystem::remove(m_log);
        return all;
    }
    std::unique_ptr<Process> start(const Words& more, const Words& through = {}) const {
        Words words = through;
        words.emplace_back(OMBRIX_PROGRAM);
        words.insert(words.end(), more.begin(), more.end());
        return std::make_unique<Process>(words, m_log);
    }
    int run(const Words& more, const Words& through = {}) const {
        return start(more, through)->wait();
    }
    /// The same with the data folder on a disk of its own, whose contents are copied to "kept".
    int runOnDisk(const std::string& options, const std::string& words) const {
        std::filesystem::create_directories(data(""));
        const std::string script = "mount -t tmpfs -o " + options + " none '" + data("") +
                                   "' && '" + OMBRIX_PROGRAM + "' " + words +
                                   "; result=$?; cp -a '" + data("") + "' '" +
                                   m_folder.file("kept") + "'; exit $result";
        return Process({"unshare", "-m", "sh", "-c", script}, m_log).wait();
    }
    static bool disksCanBeMade() { return runProgram({"unshare", "-m", "true"}) == 0; }
    static void pass(double seconds) {
        std::this_thread::sleep_for(std::chrono::duration<double>(seconds));
    }

    /// The tone is on the left; what is on the right is not to be heard.
    std::string toneFile() const {
        std::vector<std::int16_t> samples;
        for (int i = 0; i < 44100 * 20; ++i) {
            const double angle = 2 * 3.141592653589793 * 440 * i / 44100;
            samples.push_back(static_cast<std::int16_t>(std::lround(5000 * std::sin(angle))));
            samples.push_back(static_cast<std::int16_t>(i % 70 * 200));
        }
        SoundFiles::write(m_folder.file("tone.wav"),
                          SoundFiles::wav({.channels = 2}, SoundFiles::bytes(samples)));
        return m_folder.file("tone.wav");
    }
    static void expectTheToneScaledUp(const std::string& path) {
        const Recording recording = readRecording(path);
        ASSERT_EQ(recording.channels, 1u);
        EXPECT_EQ(recording.rate, 44100);
        EXPECT_NEAR(std::ranges::max(recording.frames), 1.f, 0.001f);
        const Tone tone = Tone::measure(recording.frames, recording.rate);
        EXPECT_GT(tone.windows, 20u);
        EXPECT_NEAR(tone.hertz, 440, 0.5);
        EXPECT_GT(tone.amplitude, 0.9);
    }

    ScratchFolder m_folder;
    std::string m_song = m_folder.file("a.mid");
    std::string m_log = m_folder.file("log");
};

/// From the first sample that is not silent.
std::vector<float> sounding(const std::string& path) {
    auto frames = readRecording(path).frames;
    frames.erase(frames.begin(), std::ranges::find_if(frames, [](float f) { return f != 0; }));
    return frames;
}

}  // namespace

TEST_F(RecordingCommandsTest, aTakeIsWhatJackHearsAndEndsWithItsServer) {
    // A busy machine's server may drop its clients: then there is silence, and another try.
    for (int attempt = 0; attempt < 3; ++attempt) {
        JackServer server;
        server.start();
        Process feeder({"jack-play", "-n", "feeder", "-u", toneFile()});
        const auto take = start({"take", "Mine", "--seconds", "4", "--device", "jack", "--force"});
        for (int i = 0; i < 100 && runProgram({"jack_connect", "feeder:out_1", "ombrix:in_1"}); ++i)
            pass(0.02);
        EXPECT_EQ(take->wait(), 0);
        const std::string line = said();
        EXPECT_THAT(line, HasSubstr(data("Mine.wav")));
        if (line.find("silence") == std::string::npos)
            break;
    }
    expectTheToneScaledUp(data("Mine.wav"));

    JackServer server;
    server.start();
    const auto take = start({"take", "Short", "--device", "jack"});
    pass(1.5);
    server.process().kill();
    EXPECT_EQ(take->wait(), 0);
    EXPECT_THAT(said(), HasSubstr("the take ends here"));
    EXPECT_GT(readRecording(data("Short.wav")).frames.size(), 4410u);
    server.start();  // so that it can leave JACK's registry, which has room for eight
}

TEST_F(RecordingCommandsTest, aTakeIsWhatPulseAudioHears) {
    PulseServer server;
    server.start();
    Process feeder({"paplay", "-d", "feed", toneFile()});
    EXPECT_EQ(run({"take", "Mine", "--seconds", "3", "--device", "pulse:out"}), 0);
    expectTheToneScaledUp(data("Mine.wav"));
}

TEST_F(RecordingCommandsTest, aTakeIsNeverHalfAndNeverLost) {
    auto take = start({"take", "Ended", "--device", "clock"});
    pass(0.7);
    take->signal(SIGINT);
    EXPECT_EQ(take->wait(), 0);
    EXPECT_GT(readRecording(data("Ended.wav")).frames.size(), 4410u);
    take = start({"take", "Killed", "--device", "clock"});
    pass(0.7);
    take->kill();
    EXPECT_THAT(names(), ElementsAre(kLock, "Ended.wav"));

    const Words brief{"--seconds", "0.3", "--device", "clock"};
    const auto takeNamed = [&](const std::string& name, const Words& through = {}) {
        Words words{"take", name};
        words.insert(words.end(), brief.begin(), brief.end());
        return run(words, through);
    };
    // At the call that would give it its name the take is whole already.
    EXPECT_NE(takeNamed("Killed", {"strace", "-f", "-qq", "-o", "/dev/null", "-e",
                                   "inject=renameat2:signal=SIGKILL:when=1"}),
              0);
    EXPECT_THAT(names(), ElementsAre(kLeftOver, kLock, "Ended.wav"));
    said();
    EXPECT_EQ(takeNamed("Next"), 0);
    EXPECT_THAT(said(), HasSubstr("1 unsaved take is left over"));
    EXPECT_EQ(takeNamed("Next"), 2);
    EXPECT_EQ(run({"take", "Killed", "--recover"}), 0);
    EXPECT_THAT(names(), ElementsAre(kLock, "Ended.wav", "Killed.wav", "Next.wav"));
    EXPECT_GT(readRecording(data("Killed.wav")).frames.size(), 10000u);
    EXPECT_EQ(run({"take", "Killed", "--recover", "--force"}), 1);
    EXPECT_EQ(run({"take", "../Away", "--device", "clock"}), 2);
}

TEST_F(RecordingCommandsTest, aPerformanceIsWhatARenderGivesAndOutlivesTheDevice) {
    JackServer server;
    server.start();
    const auto play = start({"play", m_song, "--record", "--no-auto-gain", "--device", "jack"});
    pass(1);
    server.process().kill();
    EXPECT_EQ(play->wait(), 0);
    server.start();  // so that it can leave JACK's registry
    const std::string line = said();
    const auto path = line.substr(line.find("recorded: ") + 10);
    const std::string recorded = path.substr(0, path.find('\n'));
    ASSERT_THAT(recorded, StartsWith(data("Recorded Live - ")));
    ASSERT_EQ(run({"render", m_song, "--no-auto-gain", "--output", m_folder.file("a.wav")}), 0);
    auto heard = sounding(recorded);
    auto rendered = sounding(m_folder.file("a.wav"));
    ASSERT_GT(heard.size(), 80000u);
    heard.resize(80000);
    rendered.resize(80000);
    EXPECT_EQ(heard, rendered);
}

TEST_F(RecordingCommandsTest, disksThatAreFullOrReadOnlyAreSaidInOneLine) {
    if (!disksCanBeMade())
        GTEST_SKIP() << "only root can make disks";
    EXPECT_EQ(runOnDisk("size=100k", "play " + m_song + " --record --device clock"), 1);
    EXPECT_THAT(said(), AllOf(StartsWith("ombrix: "), HasSubstr("disk is full"),
                              HasSubstr("s played on clock")));
    int files = 0;
    for (const auto& entry : std::filesystem::directory_iterator(m_folder.file("kept"))) {
        if (entry.path().extension() == ".mid")
            continue;  // there may have been room for the notes
        ++files;
        EXPECT_GT(readRecording(entry.path()).frames.size(), 40000u) << entry.path();
    }
    EXPECT_EQ(files, 1);
    std::filesystem::remove_all(m_folder.file("kept"));

    EXPECT_EQ(runOnDisk("size=16k", "take Mine --seconds 0.5 --device clock"), 1);
    const std::string full = said();
    EXPECT_THAT(full, AllOf(StartsWith("ombrix: "), HasSubstr("disk is full")));
    EXPECT_EQ(std::ranges::count(full, '\n'), 1) << full;
    for (const auto& entry : std::filesystem::directory_iterator(m_folder.file("kept")))
        EXPECT_EQ(entry.path().filename(), kLock);

    for (const char* words : {"take Mine --seconds 0.5 --device clock",
                              "play a.mid --record --device clock --seconds 0.5"}) {
        std::filesystem::remove_all(m_folder.file("kept"));
        std::filesystem::current_path(m_folder.path());
        EXPECT_EQ(runOnDisk("ro", words), 1);
        const std::string line = said();
        EXPECT_THAT(line, AllOf(StartsWith("ombrix: cannot write"), HasSubstr("Read-only")));
    }
}
