#pragma once

#include <map>
#include <string>

#include "QrMidi.h"
#include "midi/MidiControls.h"
#include "midi/MidiNoteQueue.h"
#include "midi/MidiPackets.h"
#include "notes/Notes.h"

/// Plays the notes from every MIDI source, and from whatever sends to the virtual destination,
/// which is on from the start. It owns the hub and is its delegate. A source that goes takes the
/// keys along that it holds. Controllers are heard where the player has switched them on. [main]
/// but for what is heard.
class MidiInput final : private QrMidiDelegate, private QrMidiSourceDelegate {
  public:
    /// Opens the hub. `defaults` outlive this.
    explicit MidiInput(UserDefaults& defaults);
    ~MidiInput() override;

    QrMidi& hub() { return m_hub; }
    MidiControls& controls() { return m_controls; }
    /// Plays from now on; what was heard before is forgotten. Not retained; null for nothing.
    void setNotes(Notes* notes);
    /// Messages lost to floods; never the release of a note that sounds.
    std::uint64_t dropped() const { return m_queue.dropped(); }

  private:
    void sourceAdded(QrMidi& midi, QrMidiSource& source) override;
    void sourceRemoved(QrMidi& midi, QrMidiSource& source) override;
    void destinationAdded(QrMidi& midi, QrMidiDestination& destination) override;
    void destinationRemoved(QrMidi& midi, QrMidiDestination& destination) override;
    void midiReceived(QrMidiSource& source, const MIDIPacketList& list) override;

    void perform(const MidiMessage& message);

    MidiControls m_controls;
    MidiNoteQueue m_queue{[this](const MidiMessage& message) { perform(message); }};
    std::map<MIDIEndpointRef, std::string> m_names;  // of the devices
    QrMidi m_hub;                                    // goes first: then nothing more is heard
};
