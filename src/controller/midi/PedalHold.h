#pragma once

#include <bitset>

#include "midi/HeldNotes.h"

/// What one channel of one source holds, with its keys and with its pedals. A plain value.
class PedalHold {
  public:
    using Notes = std::bitset<HeldNotes::kMost>;

    void press(std::uint8_t note) { m_down.set(note); }
    /// The key goes up; whether its note ends with it, and is not held by a pedal.
    bool release(std::uint8_t note);
    /// The pedals; the notes that end with them.
    Notes setSustain(bool down);
    /// Holds the keys that are down when it goes down, and no others.
    Notes setSostenuto(bool down);

    const Notes& down() const { return m_down; }
    /// Notes whose keys are up, and that a pedal holds.
    const Notes& waiting() const { return m_waiting; }
    /// The note has ended, whoever ended it.
    void ended(std::uint8_t note) { m_waiting.reset(note); }
    void keyIsUp(std::uint8_t note) { m_down.reset(note); }

  private:
    Notes takeFreed();

    Notes m_down;
    Notes m_waiting;
    Notes m_caught;  // by the sostenuto pedal
    bool m_sustain = false;
    bool m_sostenuto = false;
};
