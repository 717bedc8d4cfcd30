#pragma once

#include <vector>

#include "midi/MidiBytes.h"
#include "midi/MidiFile.h"

/// Reads the content of one track chunk up to its End of Track; what follows that is not looked at.
/// Throws MidiFileError.
class MidiTrackParser {
  public:
    explicit MidiTrackParser(MidiBytes bytes) : m_bytes(bytes) {}

    std::vector<MidiFileEvent> parse();

  private:
    void readEvent();
    void readChannelMessage();
    void readMeta();
    void readTempo(MidiBytes content, std::uint64_t lengthOffset);
    void skipExclusive();
    void skipSystemMessage();

    MidiBytes m_bytes;
    std::uint64_t m_tick = 0;  // a sum of 28-bit deltas of at least a byte each: cannot overflow
    std::uint8_t m_runningStatus = 0;
    bool m_ended = false;
    std::vector<MidiFileEvent> m_events;
};
