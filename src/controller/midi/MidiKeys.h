#pragma once

#include <compare>
#include <map>

#include "midi/MidiTypes.h"
#include "midi/PedalHold.h"
#include "notes/Notes.h"

/// Where a message comes from: one channel, 0 to 15, of one source.
struct MidiPlace {
    MIDIEndpointRef source = 0;
    int channel = 0;
    auto operator<=>(const MidiPlace&) const = default;
};

/// Plays the notes of all sources, and knows who holds which, with keys and with pedals. One that
/// a pedal holds sounds anew when its key is struck. While no pedal is down every message goes to
/// the notes as it comes. [main]
class MidiKeys {
  public:
    /// Not retained; null for nothing. What was held is forgotten.
    void setNotes(Notes* notes);
    Notes* notes() const { return m_notes; }

    void press(const MidiPlace& place, std::uint8_t note, std::uint8_t velocity);
    void release(const MidiPlace& place, std::uint8_t note);
    void setSustain(const MidiPlace& place, bool down);
    void setSostenuto(const MidiPlace& place, bool down);
    /// As if every key of it went up: pedals go on holding.
    void releaseKeys(const MidiPlace& place);

    void liftPedals(const MidiPlace& place);
    void liftAllPedals();
    /// The source is gone: all that it holds ends.
    void remove(MIDIEndpointRef source);
    /// The same for all channels of all sources but one; and for all of them.
    void removeAllBut(int channel);
    void removeAll();

  private:
    template <typename Which>
    void removeWhere(Which which);
    void end(MIDIEndpointRef source, const PedalHold::Notes& notes);
    void end(MIDIEndpointRef source, std::uint8_t note);
    bool takeFromPedals(std::uint8_t note);

    Notes* m_notes = nullptr;
    std::map<MidiPlace, PedalHold> m_places;
};
