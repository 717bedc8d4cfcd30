// How fast bytes become notes: parsing alone, and all the way to a queue that is emptied.
#include <benchmark/benchmark.h>

#include <random>
#include <vector>

#include "midi/MidiNoteQueue.h"
#include "midi/MidiPackets.h"

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

}  // namespace
