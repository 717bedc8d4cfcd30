// Any bytes as packets of MIDI, a list of several: read to their ends and no further, every note
// that is told of lies in its packet, and the ring that carries them gives them back whole.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <vector>

#include "midi/MidiMessages.h"
#include "midi/MidiPacketList.h"
#include "midi/MidiPackets.h"
#include "midi/MidiRing.h"

namespace {

void check(bool holds) {
    if (!holds)
        std::abort();
}

class Checker final : public MidiNoteReceiver {
  public:
    void midiNoteDown(std::uint8_t, std::span<const std::uint8_t> data) override {
        check(data.size() >= 2 && data[1] != 0);
        note(data);
    }
    void midiNoteUp(std::uint8_t, std::span<const std::uint8_t> data) override { note(data); }
    void midiNoteAftertouch(std::uint8_t, std::span<const std::uint8_t> data) override {
        sum(data);
    }
    std::size_t notes = 0;

  private:
    void note(std::span<const std::uint8_t> data) {
        notes += !data.empty();
        sum(data);
    }
    // Touches every byte, for the sanitizer.
    void sum(std::span<const std::uint8_t> data) {
        for (const std::uint8_t byte : data)
            m_sum = static_cast<std::uint8_t>(m_sum + byte);
    }
    volatile std::uint8_t m_sum = 0;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    // The first byte cuts the rest into packets.
    const std::size_t piece = size > 0 ? data[0] + std::size_t{1} : 1;
    std::vector<std::uint8_t> memory(sizeof(MIDIPacketList) + 20 * (size + 1));
    auto& list = *reinterpret_cast<MIDIPacketList*>(memory.data());
    MIDIPacket* next = MIDIPacketListInit(list);
    MidiRing ring;
    std::vector<std::uint8_t> message(MidiRing::kLongest);
    std::size_t notes = 0;
    for (std::size_t at = 1; at < size; at += piece) {
        const std::span packet(data + at, std::min(piece, size - at));
        next = MIDIPacketListAdd(list, memory.size(), next, at, packet);
        check(next != nullptr);
        forEachMidiNote(packet, [&](MidiNoteEvent) { ++notes; });
        check(ring.push(at, packet));
        const auto heard = ring.pop(message);
        check(heard && heard->time == at && std::ranges::equal(heard->bytes, packet));
    }
    Checker checker;
    MidiPackets(checker).handlePacketList(list);
    check(checker.notes == notes);
    return 0;
}
