#include <gtest/gtest.h>

#include <csignal>
#include <fstream>
#include <thread>

#include "JackServer.h"
#include "PulseServer.h"
#include "Tone.h"

namespace {

/// `ombrix play` holding the A above middle C for a minute: a sine of 440 Hz at half of full scale.
class PlayCommandTest : public testing::Test {
  protected:
    PlayCommandTest() {
        const unsigned char song[] = {'M', 'T', 'h',  'd',  0,    0,    0,  6, 0, 0,    0,    1,
                                      1,   224, 'M',  'T',  'r',  'k',  0,  0, 0, 14,   0,    0x90,
                                      69,  127, 0x83, 0xc2, 0x00, 0x80, 69, 0, 0, 0xff, 0x2f, 0};
        std::ofstream(m_song, std::ios::binary)
            .write(reinterpret_cast<const char*>(song), sizeof song);
    }

    void play(const std::string& device) {
        m_program = std::make_unique<Process>(
            std::vector<std::string>{OMBRIX_PROGRAM, "play", m_song, "--device", device,
                                     "--no-auto-gain"},
            m_folder.file("log"));
    }

    // A busy machine may drop cycles, and a server that has just come back needs a moment.
    template <typename Record>
    static void expectTheNote(Record record) {
        Tone heard;
        for (int attempt = 0; attempt < 8; ++attempt) {
            heard = record();
            if (heard.windows > 5 && std::abs(heard.hertz - 440) < 0.5)
                break;
        }
        EXPECT_NEAR(heard.hertz, 440, 0.5);
        EXPECT_NEAR(heard.amplitude, 0.5, 0.01);
    }
    template <typename Record>
    static void expectSilence(Record record) {
        Tone heard;
        for (int attempt = 0; attempt < 8; ++attempt) {
            heard = record();
            if (heard.windows == 0)
                break;
        }
        EXPECT_EQ(heard.windows, 0u);
    }

    ScratchFolder m_folder;
    std::string m_song = m_folder.file("a.mid");
    std::unique_ptr<Process> m_program;
};

Tone onJack() {
    return Tone::measure(JackServer::record({"ombrix:out_1"}, 1), 44100);
}

}  // namespace

TEST_F(PlayCommandTest, isHeardOnJackAndOutlivesTheServer) {
    JackServer server;
    server.start();
    play("jack");
    expectTheNote(onJack);
    server.process().kill();
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    server.start();
    expectTheNote(onJack);
    server.process().signal(SIGSTOP);
    std::this_thread::sleep_for(std::chrono::seconds(3));
    server.process().signal(SIGCONT);
    expectTheNote(onJack);
    m_program->signal(SIGUSR1);
    expectSilence(onJack);
    m_program->signal(SIGTERM);
    EXPECT_EQ(m_program->wait(), 0);
}

TEST_F(PlayCommandTest, isHeardOnPulseAudioAndOutlivesTheServer) {
    PulseServer server;
    server.start();
    play("pulse:out");
    const auto record = [&] {
        const Recording recording = server.record("out", 1);
        return Tone::measure(channelOf(recording.frames, 2, 1), recording.rate);
    };
    expectTheNote(record);
    server.process().kill();
    server.start();
    expectTheNote(record);
    m_program->signal(SIGINT);
    EXPECT_EQ(m_program->wait(), 0);
}
