#pragma once

#include <string>

#include "midi/MidiServices.h"

class QrMidi;

/// A MIDI endpoint as its hub knows it; the base of sources and destinations. What it is called is
/// read once. [main]
class QrMidiConnection {
  public:
    QrMidiConnection(QrMidi& midi, MIDIEndpointRef endpoint);
    virtual ~QrMidiConnection() = default;
    QrMidiConnection(const QrMidiConnection&) = delete;
    QrMidiConnection& operator=(const QrMidiConnection&) = delete;

    QrMidi& midi() const { return m_midi; }
    MIDIEndpointRef endpoint() const { return m_endpoint; }
    /// "Unknown name" where it has none.
    const std::string& name() const { return m_name; }
    /// Whether it belongs to a session over the network.
    bool isNetworkSession() const { return m_isNetworkSession; }

  private:
    QrMidi& m_midi;  // owns this
    const MIDIEndpointRef m_endpoint;
    std::string m_name;
    bool m_isNetworkSession = false;
};
