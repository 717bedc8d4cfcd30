// Real programs play the notes over a real server, which comes and goes.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <thread>

#include "JackServer.h"
#include "ScratchFolder.h"
#include "audiounits/devices/AudioDevices.h"
#include "log/Log.h"
#include "midi/MidiInput.h"

namespace {

using namespace std::chrono_literals;
using Steady = std::chrono::steady_clock;

constexpr int kLowKey = 39;   // MIDI note 60
constexpr int kHighKey = 43;  // MIDI note 64

class Silence final : public AudioDeviceClient {
    void produce(std::span<std::int16_t> mono, const AudioTimeStamp&) noexcept override {
        std::ranges::fill(mono, std::int16_t{0});
    }
    void consume(std::span<const std::int16_t>, const AudioTimeStamp&) noexcept override {}
};

class JackMidiTest : public testing::Test, NotesDelegate {
  protected:
    JackMidiTest() {
        for (unsigned i = 0; i < kVoiceCount; ++i) {
            m_voices.synths[i] = std::make_unique<GrainSynthesiser>(nullptr);
            m_voices.envelopes[i] = std::make_unique<ADSRShaper>();
        }
        m_notes.addDelegate(*this);
        m_midi.setNotes(&m_notes);
    }
    void keyShown(int key, bool highlighted) override {
        m_presses += highlighted;
        m_shown[static_cast<std::size_t>(key)] = highlighted;
    }

    /// Turns the main run loop until it holds; a generous time.
    template <typename Condition>
    static bool comesTrue(Condition condition, std::chrono::seconds patience = 20s) {
        for (const auto end = Steady::now() + patience; Steady::now() < end;) {
            RunLoop::main().turn();
            if (condition())
                return true;
            std::this_thread::sleep_for(1ms);
        }
        return false;
    }
    bool holds(int key) const {
        const auto index = static_cast<std::size_t>(key);
        EXPECT_EQ(m_shown[index], m_notes.triggeredNoteUnits()[index] != -1);
        return m_shown[index];
    }
    static auto timesLost(const std::string& source) {
        return std::ranges::count(Log::lines(), "Lost source " + source);
    }
    bool allReleased() const {
        return std::ranges::all_of(m_notes.triggeredNoteUnits(),
                                   [](auto unit) { return unit < 0; });
    }
    /// A program that holds a note nearly all the time: it is pressed twice a second.
    static std::unique_ptr<Process> sequencer(const std::string& name, int note) {
        return std::make_unique<Process>(std::vector<std::string>{
            "jack_midiseq", name, "22050", "0", std::to_string(note), "22000"});
    }
    ScratchFolder m_folder;
    UserDefaults m_defaults{m_folder.file("defaults")};
    JackServer m_server;
    Voices m_voices;
    Notes m_notes{m_voices};
    MidiInput m_midi{m_defaults};
    std::array<bool, kKeyCount> m_shown{};
    int m_presses = 0;
};

}  // namespace

TEST_F(JackMidiTest, programsThatComeAreHeardAndThoseThatGoLeaveNoNote) {
    m_server.start();
    auto first = sequencer("one", 60);
    ASSERT_TRUE(comesTrue([&] { return holds(kLowKey); }));
    auto second = sequencer("two", 64);
    ASSERT_TRUE(comesTrue([&] { return holds(kLowKey) && holds(kHighKey); }));
    first->kill();
    ASSERT_TRUE(comesTrue([&] { return !holds(kLowKey); }));
    EXPECT_TRUE(holds(kHighKey)) << "the other source is none of this";
    second->terminate();
    ASSERT_TRUE(comesTrue([&] { return allReleased(); }));
    for (int again = 0; again < 3; ++again) {
        first = sequencer("one", 60);
        ASSERT_TRUE(comesTrue([&] { return holds(kLowKey); })) << "round " << again;
        first->terminate();
        ASSERT_TRUE(comesTrue([&] { return allReleased(); })) << "round " << again;
    }
    EXPECT_THAT(Log::lines(), testing::AllOf(testing::Contains("Got source one:out"),
                                             testing::Contains("Lost source one:out")));
}

TEST_F(JackMidiTest, aStormIsPlayedAndLeavesNoNoteThoughItsPortComesAndGoes) {
    m_server.start();
    // What gives ports back may be ended by the server's library: then it is started again.
    std::unique_ptr<Process> storm;
    const auto stormsOn = [&](std::vector<std::string> arguments) {
        if (!storm || !storm->running())
            storm = std::make_unique<Process>(std::move(arguments));
    };
    EXPECT_TRUE(comesTrue([&] {
        stormsOn({OMBRIX_STORM, "100000", "10"});
        return m_presses >= 1000 && timesLost("storm:out") >= 50;
    })) << m_presses
        << " presses";
    storm->kill();
    EXPECT_TRUE(comesTrue([&] { return m_midi.hub().sources().empty() && allReleased(); }));

    storm = nullptr;
    const int before = m_presses;
    EXPECT_TRUE(comesTrue([&] {
        stormsOn({OMBRIX_STORM, "100000"});
        return m_presses > before + 1000;
    }));
    storm->signal(SIGUSR1);
    EXPECT_TRUE(comesTrue([&] { return allReleased(); }));
}

TEST_F(JackMidiTest, aServerThatDiesLeavesNoNoteAndIsPlayedOverAgain) {
    testing::internal::CaptureStderr();
    for (int life = 0; life < 2; ++life) {
        m_server.start(44100, life ? 256 : 1024);
        const auto player = sequencer("one", 60);
        ASSERT_TRUE(comesTrue([&] { return holds(kLowKey); }));
        m_server.process().kill();
        ASSERT_TRUE(comesTrue([&] { return allReleased() && m_midi.hub().sources().empty(); }));
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(JackMidiTest, theClientThatPlaysHasTheVirtualPortAndAPulledCableLeavesNoNote) {
    Silence client;
    std::string error;
    AudioDevices::choose("jack", error);
    const auto device = AudioDevices::current();
    m_server.start();
    device->start(client, false);
    const auto player = sequencer("one", 60);
    const std::string port = "ombrix:Ombrix Synth";
    // Connected again and again: a server under load may drop a client, which then starts anew.
    const auto playsThrough = [&](const std::string& name) {
        m_presses = 0;
        return comesTrue([&] {
            runProgram({"jack_connect", "one:out", name});
            return m_presses > 0;
        });
    };
    ASSERT_TRUE(playsThrough(port));
    // Only through the virtual port from here on.
    m_midi.hub().stopScanning();
    ASSERT_TRUE(comesTrue([&] { return !m_midi.hub().sources().empty(); }));
    m_midi.hub().disconnectSource(m_midi.hub().sources()[0]->endpoint());
    ASSERT_TRUE(playsThrough(port)) << "the virtual port is not heard";
    ASSERT_EQ(runProgram({"jack_disconnect", "one:out", port}), 0);
    ASSERT_TRUE(comesTrue([&] { return allReleased(); }));

    // The device goes: MIDI goes on in a client of its own, and moves back with the device.
    device->stop();
    ASSERT_TRUE(playsThrough("ombrix-midi:Ombrix Synth"));
    device->start(client, false);
    ASSERT_TRUE(playsThrough(port));
    device->stop();
    player->terminate();  // a server waits long for one that was killed
}
