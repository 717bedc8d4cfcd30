#include "midi/MidiInput.h"

#include "log/Log.h"

namespace {

/// Puts the notes of one source into the queue. [MIDI thread]
class Queued final : public MidiNoteReceiver {
  public:
    Queued(MidiNoteQueue& queue, MIDIEndpointRef source) : m_queue(queue), m_source(source) {}
    void midiNoteDown(std::span<const std::uint8_t> data) override {
        push(MidiNoteMessage::Kind::down, data);
    }
    void midiNoteUp(std::span<const std::uint8_t> data) override {
        push(MidiNoteMessage::Kind::up, data);
    }
    void midiNoteAftertouch(std::span<const std::uint8_t> data) override {
        push(MidiNoteMessage::Kind::aftertouch, data);
    }

  private:
    void push(MidiNoteMessage::Kind kind, std::span<const std::uint8_t> data) {
        if (!data.empty())
            m_queue.push({kind, data[0], data.size() > 1 ? data[1] : std::uint8_t{0}, m_source});
    }

    MidiNoteQueue& m_queue;
    const MIDIEndpointRef m_source;
};

}  // namespace

MidiInput::MidiInput(UserDefaults& defaults) : m_hub(defaults) {
    m_hub.setDelegate(this);
    m_hub.setVirtualDestinationEnabled(true);
    if (QrMidiSource* const source = m_hub.virtualDestinationSource())
        source->addDelegate(*this);
}

MidiInput::~MidiInput() {
    m_hub.setDelegate(nullptr);
    m_hub.setVirtualDestinationEnabled(false);
}

void MidiInput::setNotes(Notes* notes) {
    m_queue.drain();
    m_held.clear();
    m_notes = notes;
}

void MidiInput::sourceAdded(QrMidi&, QrMidiSource& source) {
    source.addDelegate(*this);
    Log::line("Got source %s", source.name().c_str());
}

void MidiInput::sourceRemoved(QrMidi&, QrMidiSource& source) {
    source.addDelegate(*this);
    Log::line("Lost source %s", source.name().c_str());
    releaseNotesOf(source.endpoint());
}

void MidiInput::destinationAdded(QrMidi&, QrMidiDestination& destination) {
    Log::line("Got destination %s", destination.name().c_str());
}

void MidiInput::destinationRemoved(QrMidi&, QrMidiDestination& destination) {
    Log::line("Lost destination %s", destination.name().c_str());
}

void MidiInput::midiReceived(QrMidiSource& source, const MIDIPacketList& list) {
    Queued queued(m_queue, source.endpoint());
    MidiPackets(queued).handlePacketList(list);
}

void MidiInput::perform(const MidiNoteMessage& message) {
    using Kind = MidiNoteMessage::Kind;
    if (!m_notes)
        return;
    if (message.kind != Kind::aftertouch)
        m_held[message.source].set(message.note, message.kind == Kind::down);
    if (message.kind == Kind::down)
        m_notes->midiNoteDown(message.note, message.velocity);
    else if (message.kind == Kind::up)
        m_notes->midiNoteUp(message.note);
    else
        m_notes->midiNoteAftertouch();
}

/// Nothing more comes from it, but what has come is played first.
void MidiInput::releaseNotesOf(MIDIEndpointRef source) {
    m_queue.drain();
    const auto held = m_held.extract(source);
    for (std::size_t note = 0; !held.empty() && note < held.mapped().size(); ++note) {
        if (held.mapped()[note] && m_notes)
            m_notes->midiNoteUp(static_cast<std::uint8_t>(note));
    }
}
