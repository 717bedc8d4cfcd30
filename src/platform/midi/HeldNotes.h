#pragma once

#include <bitset>
#include <cstddef>
#include <cstdint>

/// Which notes have been let into a queue and not yet released. A queue that lets in nothing but
/// their releases once it has room for no more than `kMost` entries can always take those: a flood
/// then costs notes, but never leaves one sounding. Channels are not told apart.
class HeldNotes {
  public:
    /// Note numbers are seven bits; damaged ones with the eighth set have a place too.
    static constexpr std::size_t kMost = 256;

    bool holds(std::uint8_t note) const { return m_notes[note]; }
    void note(std::uint8_t note, bool down) { m_notes[note] = down; }
    bool any() const { return m_notes.any(); }
    void clear() { m_notes.reset(); }

  private:
    std::bitset<kMost> m_notes;
};
