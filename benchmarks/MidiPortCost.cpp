// What a storm through a real JACK port costs, and how long a message takes to its note. A server
// must run. A child process plays 100,000 messages a second; the CPU time is this process's alone.
// Then it plays a note every 10 ms, and the time from each message's frame to its trigger is taken.
//   midi_port_cost [SECONDS]
//   midi_port_cost storm MESSAGES_A_SECOND     only plays, until it is ended
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <mutex>
#include <thread>

#include "../tests/controller/midi/StormClient.h"
#include "midi/MidiInput.h"
#include "notifications/NotificationCentre.h"

namespace {

using namespace std::chrono_literals;
using Steady = std::chrono::steady_clock;

constexpr double kMessagesPerSecond = 100000;

[[noreturn]] void play(double messagesPerSecond) {
    StormClient storm("storm");
    storm.setRate(messagesPerSecond);
    storm.plug();
    for (;;)
        std::this_thread::sleep_for(1s);
}

double cpuSeconds() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    const auto seconds = [](timeval time) {
        return double(time.tv_sec) + double(time.tv_usec) / 1e6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

long residentKilobytes() {
    std::ifstream status("/proc/self/statm");
    long pages = 0;
    status >> pages >> pages;
    return pages * (sysconf(_SC_PAGESIZE) / 1024);
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
            m_milliseconds.push_back(double(now - stamp) / 1e6);
    }
    std::uint64_t messages() const { return m_messages; }
    void print() {
        std::ranges::sort(m_milliseconds);
        const auto at = [&](double share) {
            return m_milliseconds[std::size_t(share * double(m_milliseconds.size() - 1))];
        };
        if (!m_milliseconds.empty())
            std::printf(
                "%zu notes: frame to trigger %.2f ms median, %.2f ms 99.9 %%, %.2f ms most\n",
                m_milliseconds.size(), at(0.5), at(0.999), at(1));
    }

  private:
    std::atomic<std::uint64_t> m_stamp{0};
    std::atomic<std::uint64_t> m_messages{0};
    std::vector<double> m_milliseconds;
};

void hear(double messagesPerSecond, double seconds) {
    const pid_t child = fork();
    if (child == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        play(messagesPerSecond);
    }
    UserDefaults defaults("");
    Voices voices;
    for (unsigned i = 0; i < kVoiceCount; ++i) {
        voices.synths[i] = std::make_unique<GrainSynthesiser>(nullptr);
        voices.envelopes[i] = std::make_unique<ADSRShaper>();
    }
    Notes notes(voices);
    Stopwatch stopwatch;
    notes.addDelegate(stopwatch);
    MidiInput midi(defaults);
    midi.setNotes(&notes);
    // As the window's loop does: sleeps until a call is due or somebody has added one.
    std::mutex mutex;
    std::condition_variable added;
    bool woken = false;
    RunLoop::main().setWaker([&] {
        std::lock_guard guard(mutex);
        woken = true;
        added.notify_one();
    });
    const auto turnUntil = [&](auto condition) {
        while (!condition()) {
            RunLoop::main().turn();
            std::unique_lock held(mutex);
            added.wait_for(held, 100ms, [&] { return woken; });
            woken = false;
        }
    };
    turnUntil([&] { return !midi.hub().sources().empty(); });
    // The stopwatch is told first: else a key may move before its message's time is known.
    QrMidiSource& source = *midi.hub().sources()[0];
    QrMidiSourceDelegate& player = *source.delegates()[0];
    source.removeDelegate(player);
    source.addDelegate(stopwatch);
    source.addDelegate(player);
    const double cpu = cpuSeconds();
    const long memory = residentKilobytes();
    const auto begin = Steady::now();
    turnUntil([&] { return Steady::now() - begin > std::chrono::duration<double>(seconds); });
    std::printf("%.0f messages a second for %.0f s: %.1f %% of a core, %llu dropped, %+ld kB\n",
                double(stopwatch.messages()) / seconds, seconds,
                100 * (cpuSeconds() - cpu) / seconds, (unsigned long long)midi.dropped(),
                residentKilobytes() - memory);
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    turnUntil([&] { return midi.hub().sources().empty(); });
    const auto left =
        std::ranges::count_if(notes.triggeredNoteUnits(), [](auto unit) { return unit >= 0; });
    std::printf("%ld notes left\n", long(left));
    if (messagesPerSecond < 1000)
        stopwatch.print();
    RunLoop::main().setWaker(nullptr);
}

}  // namespace

int main(int count, char** arguments) {
    if (count > 2 && !std::strcmp(arguments[1], "storm"))
        play(std::atof(arguments[2]));
    const double seconds = count > 1 ? std::atof(arguments[1]) : 60;
    hear(kMessagesPerSecond, seconds);
    hear(100, seconds);
}
