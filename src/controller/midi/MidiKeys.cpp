#include "midi/MidiKeys.h"

namespace {

template <typename What>
void forEachNote(const PedalHold::Notes& notes, What what) {
    for (std::size_t note = 0; notes.any() && note < notes.size(); ++note) {
        if (notes[note])
            what(static_cast<std::uint8_t>(note));
    }
}

}  // namespace

void MidiKeys::setNotes(Notes* notes) {
    m_places.clear();
    m_notes = notes;
}

void MidiKeys::press(const MidiPlace& place, std::uint8_t note, std::uint8_t velocity) {
    if (!m_notes)
        return;
    if (takeFromPedals(note))
        m_notes->midiNoteUp(note);
    m_places[place].press(note);
    m_notes->midiNoteDown(note, velocity);
}

void MidiKeys::release(const MidiPlace& place, std::uint8_t note) {
    if (m_places[place].release(note))
        end(place.source, note);
}

void MidiKeys::setSustain(const MidiPlace& place, bool down) {
    end(place.source, m_places[place].setSustain(down));
}

void MidiKeys::setSostenuto(const MidiPlace& place, bool down) {
    end(place.source, m_places[place].setSostenuto(down));
}

void MidiKeys::releaseKeys(const MidiPlace& place) {
    forEachNote(m_places[place].down(), [&](std::uint8_t note) { release(place, note); });
}

void MidiKeys::liftPedals(const MidiPlace& place) {
    setSustain(place, false);
    setSostenuto(place, false);
}

void MidiKeys::liftAllPedals() {
    for (const auto& [place, hold] : m_places)
        liftPedals(place);
}

void MidiKeys::remove(MIDIEndpointRef source) {
    removeWhere([source](const MidiPlace& place) { return place.source == source; });
}

void MidiKeys::removeAllBut(int channel) {
    removeWhere([channel](const MidiPlace& place) { return place.channel != channel; });
}

void MidiKeys::removeAll() {
    removeWhere([](const MidiPlace&) { return true; });
}

/// A note that several of its channels hold is released once.
template <typename Which>
void MidiKeys::removeWhere(Which which) {
    PedalHold::Notes held;
    std::erase_if(m_places, [&](const auto& place) {
        if (!which(place.first))
            return false;
        held |= place.second.down() | place.second.waiting();
        return true;
    });
    if (m_notes)
        forEachNote(held, [this](std::uint8_t note) { m_notes->midiNoteUp(note); });
}

void MidiKeys::end(MIDIEndpointRef source, const PedalHold::Notes& notes) {
    forEachNote(notes, [&](std::uint8_t note) { end(source, note); });
}

/// The first release of a note ends it, whoever else has struck it; its source holds it no more.
void MidiKeys::end(MIDIEndpointRef source, std::uint8_t note) {
    for (auto& [place, hold] : m_places) {
        hold.ended(note);
        if (place.source == source)
            hold.keyIsUp(note);
    }
    if (m_notes)
        m_notes->midiNoteUp(note);
}

/// Whether any of them held it.
bool MidiKeys::takeFromPedals(std::uint8_t note) {
    bool waited = false;
    for (auto& [place, hold] : m_places) {
        waited = waited || hold.waiting()[note];
        hold.ended(note);
    }
    return waited;
}
