// What a storm through a real JACK port costs, and how long a message takes to its note. A server
// must run. A child process plays 100,000 messages a second; the CPU time is this process's alone.
// Then it plays a note every 10 ms, and the time from each message's frame to its trigger is taken.
//   midi_port_cost [SECONDS]
//   midi_port_cost storm MESSAGES_A_SECOND     only plays, until it is ended
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <thread>

#include "../tests/storm/StormClient.h"
#include "MidiListener.h"

namespace {

using namespace std::chrono_literals;

constexpr double kMessagesPerSecond = 100000;

[[noreturn]] void play(double messagesPerSecond) {
    StormClient storm("storm");
    storm.setRate(messagesPerSecond);
    storm.plug();
    for (;;)
        std::this_thread::sleep_for(1s);
}

/// Times each note from the frame of its message to the key that it moves.
class Stopwatch final : public QrMidiSourceDelegate, public NotesDelegate {
  public:
    void midiReceived(QrMidiSource&, const MIDIPacketList& list) override {
        m_stamp = list.packet[0].timeStamp;
        m_messages += list.numPackets;
    }
    void keyShown(int, bool) override {
        const auto now = std::uint64_t(Steady::now().time_since_epoch() / 1ns);
        if (const std::uint64_t stamp = m_stamp.exchange(0))
            m_times.add(double(now - stamp) / 1e6);
    }
    std::uint64_t messages() const { return m_messages; }
    void print() { m_times.print("frame to trigger"); }

  private:
    std::atomic<std::uint64_t> m_stamp{0};
    std::atomic<std::uint64_t> m_messages{0};
    NoteTimes m_times;
};

void hear(double messagesPerSecond, double seconds) {
    const pid_t child = fork();
    if (child == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        play(messagesPerSecond);
    }
    Stopwatch stopwatch;
    MidiListener listener(stopwatch);
    MidiInput& midi = listener.midi();
    listener.turnUntil([&] { return !midi.hub().sources().empty(); });
    // The stopwatch is told first: else a key may move before its message's time is known.
    QrMidiSource& source = *midi.hub().sources()[0];
    QrMidiSourceDelegate& player = *source.delegates()[0];
    source.removeDelegate(player);
    source.addDelegate(stopwatch);
    source.addDelegate(player);
    const double cpu = cpuSeconds();
    const long memory = residentKilobytes();
    listener.turnFor(seconds);
    std::printf("%.0f messages a second for %.0f s: %.1f %% of a core, %llu dropped, %+ld kB\n",
                double(stopwatch.messages()) / seconds, seconds,
                100 * (cpuSeconds() - cpu) / seconds, (unsigned long long)midi.dropped(),
                residentKilobytes() - memory);
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    listener.turnUntil([&] { return midi.hub().sources().empty(); });
    std::printf("%ld notes left\n", listener.notesLeft());
    if (messagesPerSecond < 1000)
        stopwatch.print();
}

}  // namespace

int main(int count, char** arguments) {
    if (count > 2 && !std::strcmp(arguments[1], "storm"))
        play(std::atof(arguments[2]));
    const double seconds = count > 1 ? std::atof(arguments[1]) : 60;
    hear(kMessagesPerSecond, seconds);
    hear(100, seconds);
}
