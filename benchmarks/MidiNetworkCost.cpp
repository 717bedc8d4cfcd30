// What a storm over the network session costs, and how long a message takes to its note. A child
// process takes part over this machine's own network and plays 100,000 messages a second; the CPU
// time is this process's alone. Then it plays a note every 10 ms, and the time from just before
// each is sent to its trigger is taken: the network and the waking of the thread are in it.
//   midi_network_cost [SECONDS [MESSAGES-A-PACKET]]
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <thread>

#include "../tests/network/RawPeer.h"
#include "MidiListener.h"
#include "midi/MidiNetworkSession.h"
#include "midi/network/NetworkMidi.h"

namespace {

using namespace std::chrono_literals;

constexpr double kMessagesPerSecond = 100000;

/// What both processes see.
struct Shared {
    std::atomic<int> port{0};  // of the session, once it is open
    std::atomic<bool> stop{false};
    std::atomic<bool> stopped{false};
    std::atomic<std::uint64_t> sent{0};   // messages
    std::atomic<std::uint64_t> stamp{0};  // of the latest packet, steady nanoseconds
};

std::uint64_t nanoseconds() {
    return std::uint64_t(Steady::now().time_since_epoch() / 1ns);
}

/// The next presses and releases of the storm, note after note.
std::vector<std::uint8_t> nextCommands(std::uint64_t first, std::size_t count) {
    std::vector<std::uint8_t> commands;
    for (std::uint64_t i = first; i < first + count; ++i) {
        if (!commands.empty())
            commands.push_back(0);
        commands.push_back(i % 2 == 0 ? 0x90 : 0x80);
        commands.push_back(std::uint8_t(48 + i / 2 % 36));
        commands.push_back(100);
    }
    return commands;
}

[[noreturn]] void play(Shared& shared, double messagesPerSecond, std::size_t perPacket) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    while (shared.port == 0)
        std::this_thread::sleep_for(10ms);
    RawPeer peer;
    if (!peer.join(std::uint16_t(shared.port), "storm"))
        std::exit(1);
    std::this_thread::sleep_for(1s);
    const auto begin = Steady::now();
    while (!shared.stop || shared.sent % 2 != 0) {
        const double seconds = std::chrono::duration<double>(Steady::now() - begin).count();
        while (double(shared.sent) < seconds * messagesPerSecond) {
            const auto commands = nextCommands(shared.sent, perPacket);
            shared.stamp = nanoseconds();
            peer.play(commands);
            shared.sent += perPacket;
        }
        std::this_thread::sleep_for(200us);
    }
    shared.stopped = true;
    for (;;)
        std::this_thread::sleep_for(1s);
}

/// Counts what is heard, and times each note from its sending to the key that it moves.
class Stopwatch final : public QrMidiSourceDelegate, public NotesDelegate {
  public:
    explicit Stopwatch(const Shared& shared) : m_shared(shared) {}
    void midiReceived(QrMidiSource&, const MIDIPacketList& list) override {
        m_messages += list.numPackets;
        const MIDIPacket* packet = list.packet;
        for (std::uint32_t i = 0; i < list.numPackets; ++i, packet = MIDIPacketNext(packet))
            m_releases += packet->data[0] >> 4 == 8;
    }
    void keyShown(int, bool down) override {
        if (down)
            m_times.add(double(nanoseconds() - m_shared.stamp) / 1e6);
    }
    std::uint64_t messages() const { return m_messages; }
    std::uint64_t releases() const { return m_releases; }
    void print() { m_times.print("sent to trigger"); }

  private:
    const Shared& m_shared;
    std::atomic<std::uint64_t> m_messages{0};
    std::atomic<std::uint64_t> m_releases{0};
    NoteTimes m_times;
};

void hear(double messagesPerSecond, double seconds, std::size_t perPacket) {
    auto& shared = *new (mmap(nullptr, sizeof(Shared), PROT_READ | PROT_WRITE,
                              MAP_SHARED | MAP_ANONYMOUS, -1, 0)) Shared;
    const pid_t child = fork();
    if (child == 0)
        play(shared, messagesPerSecond, perPacket);
    MidiBackends::use({[] { return std::make_shared<NetworkMidi>(); }});
    Stopwatch stopwatch(shared);
    MidiListener listener(stopwatch);
    MidiInput& midi = listener.midi();
    midi.hub().setNetworkEnabled(true);
    const MIDINetworkSession& session = MIDINetworkSession::defaultSession();
    listener.turnUntil([&] { return session.port() != 0; });
    shared.port = session.port();
    listener.turnUntil([&] { return !midi.hub().sources().empty(); });
    midi.hub().sources()[0]->addDelegate(stopwatch);
    listener.turnUntil([&] { return shared.sent > 0; });
    const double cpu = cpuSeconds();
    const long memory = residentKilobytes();
    const std::uint64_t before = stopwatch.messages();
    listener.turnFor(seconds);
    std::printf("%.0f messages a second for %.0f s, %zu a packet: %.1f %% of a core, %+ld kB\n",
                double(stopwatch.messages() - before) / seconds, seconds, perPacket,
                100 * (cpuSeconds() - cpu) / seconds, residentKilobytes() - memory);
    shared.stop = true;
    listener.turnUntil([&] { return bool(shared.stopped); });
    listener.turnFor(1);
    const std::uint64_t releases = shared.sent / 2;
    std::printf(
        "%llu of %llu releases lost on the way, %llu messages dropped by the queue, "
        "%ld notes left\n",
        (unsigned long long)(releases - stopwatch.releases()), (unsigned long long)releases,
        (unsigned long long)midi.dropped(), listener.notesLeft());
    if (messagesPerSecond < 1000)
        stopwatch.print();
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    munmap(&shared, sizeof(Shared));
}

}  // namespace

int main(int count, char** arguments) {
    const double seconds = count > 1 ? std::atof(arguments[1]) : 60;
    const std::size_t perPacket = count > 2 ? std::size_t(std::atoi(arguments[2])) : 1;
    hear(kMessagesPerSecond, seconds, std::max<std::size_t>(perPacket, 1));
    hear(100, seconds, 1);
}
