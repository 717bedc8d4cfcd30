// How fast bytes become notes: parsing alone, all the way to a queue that is emptied, and through
// a network session.
#include <benchmark/benchmark.h>

#include <random>
#include <vector>

#include "midi/MidiNoteQueue.h"
#include "midi/MidiPackets.h"
#include "midi/network/NetworkSession.h"

namespace {

/// Whole messages of every kind, as a busy player sends them.
std::vector<std::uint8_t> messages(std::size_t bytes) {
    std::mt19937 random(1);
    std::vector<std::uint8_t> made;
    while (made.size() < bytes) {
        constexpr std::uint8_t kStatuses[] = {0x80, 0x90, 0x90, 0xA0, 0xB0, 0xE0, 0xC0, 0xF8};
        const std::uint8_t status = kStatuses[random() % 8];
        made.push_back(status);
        for (int left = status == 0xF8 ? 0 : status == 0xC0 ? 1 : 2; left > 0; --left)
            made.push_back(std::uint8_t(random() % 128));
    }
    return made;
}

class Counter final : public MidiNoteReceiver {
  public:
    void midiNoteDown(std::uint8_t, std::span<const std::uint8_t> data) override { sum += data[0]; }
    void midiNoteUp(std::uint8_t, std::span<const std::uint8_t> data) override { sum += data[0]; }
    void midiNoteAftertouch(std::uint8_t, std::span<const std::uint8_t> data) override {
        sum += data[0];
    }
    std::uint64_t sum = 0;
};

void parse(benchmark::State& state) {
    const auto packet = messages(std::size_t(state.range(0)));
    Counter counter;
    MidiPackets packets(counter);
    for (auto _ : state) {
        packets.handleMidiPacket(packet);
        benchmark::DoNotOptimize(counter.sum);
    }
    state.SetBytesProcessed(state.iterations() * std::int64_t(packet.size()));
}
BENCHMARK(parse)->Arg(3)->Arg(256)->Arg(65535);

void queueAndPerform(benchmark::State& state) {
    std::uint64_t sum = 0;
    MidiNoteQueue queue([&](const MidiMessage& message) { sum += message.data1; });
    std::uint8_t note = 0;
    for (auto _ : state) {
        for (int i = 0; i < state.range(0); ++i)
            queue.push({MidiMessage::Kind::up, note++, 0, 1});
        queue.drain();
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(queueAndPerform)->Arg(1)->Arg(1024);

/// Two sessions whose datagrams are kept, so that one side can be timed alone.
class Ends final : public NetworkSessionHost {
  public:
    explicit Ends(std::uint32_t ssrc) : session(*this, {"Benchmark", ssrc, [] { return 1u; }}) {}

    void send(SessionPort, const NetworkAddress&, std::span<const std::uint8_t> bytes) override {
        sent.emplace_back(bytes.begin(), bytes.end());
    }
    bool isNear(const NetworkAddress&) override { return true; }
    bool isContact(const NetworkAddress&) override { return true; }
    void peerJoined(std::uint32_t id, const std::string&, const NetworkAddress&) override {
        peer = id;
    }
    void peerLeft(std::uint32_t) override {}
    void asked(std::uint32_t, const std::string&, const NetworkAddress&) override {}
    void askEnded(std::uint32_t) override {}
    void inviteFailed(const NetworkAddress&, const std::string&) override {}
    void received(std::uint32_t, SessionTime, std::span<const std::uint8_t> message) override {
        sum += message[0];
    }
    /// Somebody else's invitation, on both ports.
    void invited(std::uint32_t ssrc) {
        SessionPacket packet;
        packet.command = SessionCommand::invitation;
        packet.ssrc = ssrc;
        for (const SessionPort port : {SessionPort::control, SessionPort::data})
            session.receive(port, {}, packet.written(), 0);
        sent.clear();
    }

    std::vector<std::vector<std::uint8_t>> sent;
    std::uint32_t peer = 0;
    std::uint64_t sum = 0;
    NetworkSession session;
};

/// Datagrams of `bytes` of messages each, as a session sends them. The receiver's feedback comes
/// once for all that are timed together.
void networkSend(benchmark::State& state) {
    const auto packet = messages(std::size_t(state.range(0)));
    Ends sender(1);
    sender.invited(2);
    for (auto _ : state) {
        sender.session.send(sender.peer, packet, 0);
        sender.sent.clear();
    }
    state.SetBytesProcessed(state.iterations() * std::int64_t(packet.size()));
}
BENCHMARK(networkSend)->Arg(3)->Arg(600);

void networkReceive(benchmark::State& state) {
    const auto packet = messages(std::size_t(state.range(0)));
    Ends sender(1), receiver(2);
    sender.invited(2);
    receiver.invited(1);
    for (int i = 0; i < 65536; ++i)  // all sequence numbers, so that they can come round again
        sender.session.send(sender.peer, packet, 0);
    const std::size_t count = sender.sent.size() & ~std::size_t{65535};
    std::size_t bytes = 0, next = 0;
    for (auto _ : state) {
        const auto& datagram = sender.sent[next];
        receiver.session.receive(SessionPort::data, {}, datagram, 0);
        bytes += datagram.size();
        next = (next + 1) % count;
        benchmark::DoNotOptimize(receiver.sum);
    }
    state.SetBytesProcessed(std::int64_t(bytes));
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(networkReceive)->Arg(3)->Arg(600);

}  // namespace
