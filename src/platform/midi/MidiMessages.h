#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

/// Data bytes behind a status byte. Those of an exclusive message have no fixed number: one is
/// counted, and the others are met as data bytes without a status.
constexpr std::size_t midiDataBytes(std::uint8_t status) {
    switch (status >> 4) {
        case 12:  // program change
        case 13:  // channel pressure
            return 1;
        case 15:
            return status == 0xF2 ? 2 : status == 0xF0 || status == 0xF1 || status == 0xF3 ? 1 : 0;
        default:
            return status < 0x80 ? 0 : 2;
    }
}

/// Ends what releases of notes do not: controllers are reset, which lifts pedals, and all notes are
/// off, channel by channel.
constexpr auto kMidiReleaseAll = [] {
    std::array<std::uint8_t, 96> bytes{};
    for (std::size_t channel = 0; channel < 16; ++channel) {
        const auto status = static_cast<std::uint8_t>(0xB0 | channel);
        std::uint8_t* const at = bytes.data() + 6 * channel;
        at[0] = at[3] = status;
        at[1] = 121;
        at[4] = 123;
    }
    return bytes;
}();

/// Whether the bytes may hold something that releases on the first channel do not end: a pedal goes
/// down, or a key of another channel. [any thread]
inline bool midiHoldsMore(std::span<const std::uint8_t> bytes) {
    for (std::size_t at = 0; at + 2 < bytes.size(); at += 1 + midiDataBytes(bytes[at])) {
        const bool isPedal = bytes[at + 1] == 64 || bytes[at + 1] == 66;
        if ((bytes[at] > 0x90 && bytes[at] < 0xA0) ||
            (bytes[at] >> 4 == 11 && isPedal && bytes[at + 2] >= 64))
            return true;
    }
    return false;
}

/// One note-on or note-off among a packet's bytes.
struct MidiNoteEvent {
    bool down;
    std::uint8_t note;
    std::uint8_t velocity;
};

/// Calls `what` for every note-on and note-off. A note-on with velocity 0 is a note-off, and a
/// note-off may lack its velocity at the end. [any thread]
template <typename What>
void forEachMidiNote(std::span<const std::uint8_t> bytes, What what) {
    for (std::size_t at = 0; at < bytes.size(); at += 1 + midiDataBytes(bytes[at])) {
        const int message = bytes[at] >> 4;
        const std::size_t data = bytes.size() - at - 1;
        const std::uint8_t velocity = data >= 2 ? bytes[at + 2] : std::uint8_t{0};
        if (message == 9 && data >= 2)
            what(MidiNoteEvent{velocity != 0, bytes[at + 1], velocity});
        else if (message == 8 && data >= 1)
            what(MidiNoteEvent{false, bytes[at + 1], velocity});
    }
}
