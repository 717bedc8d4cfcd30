// `ombrix live` and `ombrix midi`, played by a foreign sequencer over a real JACK server, and heard
// through it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <optional>
#include <thread>

#include "Contents.h"
#include "JackServer.h"
#include "Recording.h"
#include "ScratchFolder.h"
#include "Tone.h"

namespace {

using testing::HasSubstr;
using Words = std::vector<std::string>;

constexpr double kMiddleC = 261.6256;
constexpr double kA = 440;
constexpr std::ptrdiff_t kPeriod = 512;

class MidiCommandsTest : public testing::Test {
  protected:
    MidiCommandsTest() {
        setenv("OMBRIX_DATA", m_folder.file("data").c_str(), 1);
        setenv("XDG_CONFIG_HOME", m_folder.file("config").c_str(), 1);
        m_server.start(44100, kPeriod);
    }
    std::unique_ptr<Process> start(const Words& more) const {
        Words words{OMBRIX_PROGRAM};
        words.insert(words.end(), more.begin(), more.end());
        return std::make_unique<Process>(words, m_log);
    }
    std::unique_ptr<Process> live(const Words& more = {}) const {
        Words words{"live", "--device", "jack", "--no-auto-gain", "--verbose"};
        words.insert(words.end(), more.begin(), more.end());
        return start(words);
    }
    /// Presses a note twice a second, for so many of 22050 frames.
    static std::unique_ptr<Process> sequencer(int note, int frames = 22000) {
        return std::make_unique<Process>(Words{"jack_midiseq", "seq", "22050", "0",
                                               std::to_string(note), std::to_string(frames)});
    }
    /// What the program plays for a second; nothing while its port is not there.
    static std::optional<Tone> heard() {
        const auto frames = JackServer::record({"ombrix:out_1"}, 1);
        if (frames.size() > 22050)
            return Tone::measure(frames, 44100);
        std::this_thread::sleep_for(std::chrono::seconds(1));
        return std::nullopt;
    }
    // A busy machine drops cycles and clients; what is right comes in the end, and only then.
    template <typename Right>
    static bool isHeard(Right right) {
        for (int attempt = 0; attempt < 20; ++attempt) {
            const auto tone = heard();
            if (tone && right(*tone))
                return true;
        }
        return false;
    }
    static void expectNote(double hertz) {
        EXPECT_TRUE(isHeard([&](const Tone& tone) {
            return tone.windows > 5 && std::abs(tone.hertz - hertz) < 0.5;
        })) << hertz;
    }
    static void expectSilence() {
        EXPECT_TRUE(isHeard([](const Tone& tone) { return tone.windows == 0; })) << "a note hangs";
    }
    std::string said() const { return contentsOf(m_log); }
    /// Waits until the program says it, again where it has said it before; a generous time.
    bool says(const std::string& text, int times = 1) const {
        for (int i = 0; i < 1500; ++i) {
            const std::string all = said();
            int found = 0;
            for (auto at = all.find(text); at != all.npos; at = all.find(text, at + 1))
                ++found;
            if (found >= times)
                return true;
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
        }
        return false;
    }
    /// The name of the only file with that extension in the data folder.
    std::string recorded(const std::string& extension) const {
        std::string found;
        for (const auto& entry : std::filesystem::directory_iterator(m_folder.file("data"))) {
            if (entry.path().extension() == extension)
                found = found.empty() ? entry.path().string() : "more than one";
        }
        return found;
    }

    ScratchFolder m_folder;
    std::string m_log = m_folder.file("log");
    JackServer m_server;
};

/// Frames at which a sound begins, after a silence of some length.
std::vector<std::ptrdiff_t> beginnings(const std::string& path) {
    std::vector<std::ptrdiff_t> found;
    std::ptrdiff_t silence = 4000, at = 0;
    for (const float sample : readRecording(path).frames) {
        if (sample != 0 && silence >= 4000)
            found.push_back(at);
        silence = sample == 0 ? silence + 1 : 0;
        ++at;
    }
    return found;
}

}  // namespace

TEST_F(MidiCommandsTest, aForeignProgramIsHeardWhereverItComesFromAndLeavesNoNote) {
    auto player = sequencer(60);
    auto program = live();
    expectNote(kMiddleC);
    program->signal(SIGTERM);
    EXPECT_EQ(program->wait(), 0) << "it was being played";
    program = live();
    expectNote(kMiddleC);
    player->kill();
    expectSilence();
    EXPECT_TRUE(says("Lost source seq:out"));
    player = sequencer(69);
    expectNote(kA);
    m_server.process().kill();
    m_server.start(44100, 256);
    player = sequencer(60);
    expectNote(kMiddleC);
    player->terminate();
    expectSilence();
    program->signal(SIGINT);
    EXPECT_EQ(program->wait(), 0);
    EXPECT_THAT(said(), HasSubstr("s played on jack"));
}

TEST_F(MidiCommandsTest, whatWasPlayedCanBeRenderedAgainInTime) {
    const auto program = live({"--record"});
    ASSERT_TRUE(says("Playing through JACK"));
    const auto player = sequencer(69, 8000);
    ASSERT_TRUE(says("Got source seq:out"));
    std::this_thread::sleep_for(std::chrono::seconds(4));
    program->signal(SIGHUP);
    EXPECT_EQ(program->wait(), 0);
    const std::string again = m_folder.file("again.wav");
    ASSERT_EQ(start({"render", recorded(".mid"), "--no-auto-gain", "--buffer-frames", "16",
                     "--output", again})
                  ->wait(),
              0);
    const auto first = beginnings(recorded(".wav"));
    const auto second = beginnings(again);
    ASSERT_GE(first.size(), 4u);
    ASSERT_GE(second.size() + 1, first.size());  // the end may come between a key and its sound
    for (std::size_t i = 0; i + 1 < first.size(); ++i)
        EXPECT_LE(std::abs(first[i] - second[i]), kPeriod + 16) << "note " << i;
    EXPECT_NEAR(Tone::measure(readRecording(again).frames, 44100).hertz, kA, 0.5);
    player->terminate();  // a server waits long for one that was killed
}

TEST_F(MidiCommandsTest, theMonitorShowsWhatComesAndGoes) {
    const auto player = sequencer(60, 11000);
    const auto program = start({"midi", "--monitor"});
    EXPECT_TRUE(says("seq:out                   note on 60 (C4) velocity 64 channel 1", 2));
    EXPECT_TRUE(says("seq:out                   note off 60 (C4) velocity 64 channel 1", 2));
    const std::string list = m_folder.file("list");
    EXPECT_EQ(Process({OMBRIX_PROGRAM, "midi"}, list).wait(), 0);
    EXPECT_THAT(contentsOf(list), HasSubstr("Sources\n  seq:out\nDestinations\n"));
    player->kill();
    EXPECT_TRUE(says("seq:out                   is gone"));
    program->signal(SIGINT);
    EXPECT_EQ(program->wait(), 0);
}
