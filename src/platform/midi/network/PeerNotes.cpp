#include "midi/network/PeerNotes.h"

#include <algorithm>
#include <array>

void PeerNotes::follow(std::span<const std::uint8_t> message) {
    const int kind = message[0] >> 4;
    if (kind == 8 || kind == 9)
        m_held[message[0] & 0x0F][message[1]] = kind == 9 && message[2] != 0;
}

bool PeerNotes::any() const {
    return std::ranges::any_of(m_held, [](const auto& notes) { return notes.any(); });
}

void PeerNotes::release(const ChannelNotes& which, MidiCommandSink& sink) {
    for (std::size_t channel = 0; channel < which.size(); ++channel) {
        const auto ending = m_held[channel] & which[channel];
        m_held[channel] &= ~ending;
        forEachNote(ending, [&](std::size_t note) {
            sink.command(std::array{static_cast<std::uint8_t>(0x80 | channel),
                                    static_cast<std::uint8_t>(note), std::uint8_t{64}});
        });
    }
}

void PeerNotes::releaseAll(MidiCommandSink& sink) {
    release(ChannelNotes(m_held), sink);
}
