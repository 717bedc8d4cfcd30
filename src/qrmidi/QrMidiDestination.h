#pragma once

#include <span>

#include "QrMidiConnection.h"

/// Where MIDI can be sent to. [main]
class QrMidiDestination : public QrMidiConnection {
  public:
    using QrMidiConnection::QrMidiConnection;

    /// Forgets what has not gone out yet.
    void flushOutput();
    /// As one packet, now. 65536 bytes or more stop the program.
    void sendBytes(std::span<const std::uint8_t> bytes);
    /// Through the hub's output port; a failure is logged.
    virtual void sendPacketList(const MIDIPacketList& list);
};

/// Stands for the hub's own virtual source: what is sent to it comes out of that source, for the
/// programs that listen to it.
class QrMidiVirtualSourceDestination final : public QrMidiDestination {
  public:
    using QrMidiDestination::QrMidiDestination;
    void sendPacketList(const MIDIPacketList& list) override;
};
