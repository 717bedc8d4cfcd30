#include "midi/MidiInput.h"

#include "log/Log.h"

namespace {

/// Puts what one source plays into the queue. [MIDI thread]
class Queued final : public MidiNoteReceiver {
  public:
    Queued(MidiNoteQueue& queue, MIDIEndpointRef source, bool controllers)
        : m_queue(queue), m_source(source), m_controllers(controllers) {}
    void midiNoteDown(std::uint8_t channel, std::span<const std::uint8_t> data) override {
        note(Kind::down, channel, data);
    }
    void midiNoteUp(std::uint8_t channel, std::span<const std::uint8_t> data) override {
        note(Kind::up, channel, data);
    }
    void midiNoteAftertouch(std::uint8_t channel, std::span<const std::uint8_t> data) override {
        note(Kind::aftertouch, channel, data);
    }
    void midiControlChange(std::uint8_t channel, std::uint8_t controller,
                           std::uint8_t value) override {
        control({Kind::control, controller, value, m_source, channel});
    }
    void midiProgramChange(std::uint8_t channel, std::uint8_t program) override {
        control({Kind::program, program, 0, m_source, channel});
    }
    void midiPitchBend(std::uint8_t channel, std::uint8_t low, std::uint8_t high) override {
        control({Kind::bend, low, high, m_source, channel});
    }

  private:
    using Kind = MidiMessage::Kind;

    void note(Kind kind, std::uint8_t channel, std::span<const std::uint8_t> data) {
        if (!data.empty())
            m_queue.push(
                {kind, data[0], data.size() > 1 ? data[1] : std::uint8_t{0}, m_source, channel});
    }
    void control(const MidiMessage& message) {
        if (m_controllers)
            m_queue.push(message);
    }

    MidiNoteQueue& m_queue;
    const MIDIEndpointRef m_source;
    const bool m_controllers;
};

}  // namespace

MidiInput::MidiInput(UserDefaults& defaults) : m_controls(defaults), m_hub(defaults) {
    m_hub.setDelegate(this);
    m_hub.setNetworkEnabled(true);
    m_hub.setVirtualDestinationEnabled(true);
    if (QrMidiSource* const source = m_hub.virtualDestinationSource()) {
        m_names[source->endpoint()] = source->name();
        source->addDelegate(*this);
    }
}

MidiInput::~MidiInput() {
    m_hub.setDelegate(nullptr);
    m_hub.setVirtualDestinationEnabled(false);
}

void MidiInput::setNotes(Notes* notes) {
    m_queue.drain();
    m_controls.setNotes(notes);
}

void MidiInput::sourceAdded(QrMidi&, QrMidiSource& source) {
    m_names[source.endpoint()] = source.name();
    source.addDelegate(*this);
    Log::line("Got source %s", source.name().c_str());
}

void MidiInput::sourceRemoved(QrMidi&, QrMidiSource& source) {
    source.addDelegate(*this);
    Log::line("Lost source %s", source.name().c_str());
    m_queue.drain();  // nothing more comes from it, but what has come is played first
    m_controls.remove(source.endpoint());
    m_names.erase(source.endpoint());
}

void MidiInput::destinationAdded(QrMidi&, QrMidiDestination& destination) {
    Log::line("Got destination %s", destination.name().c_str());
}

void MidiInput::destinationRemoved(QrMidi&, QrMidiDestination& destination) {
    Log::line("Lost destination %s", destination.name().c_str());
}

void MidiInput::midiReceived(QrMidiSource& source, const MIDIPacketList& list) {
    Queued queued(m_queue, source.endpoint(), m_controls.enabled());
    MidiPackets(queued).handlePacketList(list);
}

void MidiInput::perform(const MidiMessage& message) {
    static const std::string kUnknown;
    const auto name = m_names.find(message.source);
    m_controls.perform(message, name == m_names.end() ? kUnknown : name->second);
}
