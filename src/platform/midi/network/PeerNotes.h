#pragma once

#include <cstdint>
#include <span>

#include "midi/network/ChannelNotes.h"
#include "midi/network/MidiCommandSink.h"

/// Which notes of one peer are held. It follows what is handed on, and makes the note-offs that a
/// peer cannot send any more.
class PeerNotes {
  public:
    void follow(std::span<const std::uint8_t> message);
    bool holds(std::size_t channel, std::size_t note) const { return m_held[channel][note]; }
    const ChannelNotes& held() const { return m_held; }
    bool any() const;

    /// Those of `which` that are held; each is told to `sink` as a note-off.
    void release(const ChannelNotes& which, MidiCommandSink& sink);
    void releaseAll(MidiCommandSink& sink);

  private:
    ChannelNotes m_held{};
};
