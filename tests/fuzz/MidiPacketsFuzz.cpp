// Any bytes as packets of MIDI, a list of several: read to their ends and no further, every note
// that is told of lies in its packet, and the ring that carries them gives them back whole. With
// controllers switched on nothing sounds any more once all keys and pedals are up.
#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <vector>

#include "midi/MidiControls.h"
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

/// An instrument without its sound, and dials that remember.
class Player final : public MidiNoteReceiver, public MidiControlTarget {
  public:
    Player() {
        for (unsigned i = 0; i < kVoiceCount; ++i) {
            m_voices.voiceSynths[i] = std::make_unique<GrainSynthesiser>(nullptr);
            m_voices.voiceEnvelopes[i] = std::make_unique<ADSRShaper>();
        }
        m_controls.setNotes(&m_notes);
        m_controls.setTarget(this);
    }
    void begin() {
        m_controls.setSettings({.enabled = true, .modulation = ParameterId::preamp});
        m_controls.learn(ParameterId::grainSize);
    }
    void midiNoteDown(std::uint8_t channel, std::span<const std::uint8_t> data) override {
        perform({MidiMessage::Kind::down, data[0], data[1], 1, channel});
    }
    void midiNoteUp(std::uint8_t channel, std::span<const std::uint8_t> data) override {
        if (!data.empty())
            perform({MidiMessage::Kind::up, data[0], 0, 1, channel});
    }
    void midiNoteAftertouch(std::uint8_t, std::span<const std::uint8_t>) override {}
    void midiControlChange(std::uint8_t channel, std::uint8_t number, std::uint8_t value) override {
        perform({MidiMessage::Kind::control, number, value, 1, channel});
    }
    void midiProgramChange(std::uint8_t channel, std::uint8_t program) override {
        perform({MidiMessage::Kind::program, program, 0, 1, channel});
    }
    void midiPitchBend(std::uint8_t channel, std::uint8_t low, std::uint8_t high) override {
        perform({MidiMessage::Kind::bend, low, high, 1, channel});
    }
    void endEverything() {
        for (int channel = 0; channel < 16; ++channel) {
            for (const auto controller : {std::uint8_t{121}, std::uint8_t{123}})
                midiControlChange(static_cast<std::uint8_t>(channel), controller, 0);
        }
        for (const auto unit : m_notes.triggeredNoteUnits())
            check(unit < 0);
        for (const auto& synth : m_voices.voiceSynths) {
            const float hertz = synth->note()->frequency;
            check(hertz == 440.f || std::ranges::count(m_notes.noteFrequencies(), hertz) == 1);
        }
        m_controls.setSettings({});
    }
    float dialValue(ParameterId id) override { return m_dials[std::size_t(id)]; }
    void turnDial(ParameterId id, float value) override {
        check(parameter(id).dial.contains(value));
        m_dials[std::size_t(id)] = value;
    }
    void pickPreset(int number) override { check(number >= 0 && number < 128); }
    void silence() override { m_notes.releaseAll(); }

  private:
    void perform(const MidiMessage& message) { m_controls.perform(message, "device"); }

    UserDefaults m_defaults{""};
    Voices m_voices;
    Notes m_notes{m_voices};
    MidiControls m_controls{m_defaults};
    std::array<float, kParameterCount> m_dials{};
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
    static Player player;
    player.begin();
    MidiPackets(player).handlePacketList(list);
    player.endEverything();
    return 0;
}
