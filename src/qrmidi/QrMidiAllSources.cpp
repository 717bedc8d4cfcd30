#include "QrMidiAllSources.h"

void QrMidiAllSources::setMidi(QrMidi* midi) {
    if (m_midi) {
        m_midi->setDelegate(nullptr);
        for (const auto& source : m_midi->sources())
            source->removeDelegate(*this);
    }
    m_midi = midi;
    if (!m_midi)
        return;
    for (const auto& source : m_midi->sources())
        source->addDelegate(*this);
}

void QrMidiAllSources::sourceAdded(QrMidi&, QrMidiSource& source) {
    source.addDelegate(*this);
}

void QrMidiAllSources::midiReceived(QrMidiSource& source, const MIDIPacketList& list) {
    if (QrMidiSourceDelegate* const delegate = m_delegate.load())
        delegate->midiReceived(source, list);
}
