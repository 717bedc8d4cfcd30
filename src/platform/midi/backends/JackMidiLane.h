#pragma once

#include <array>
#include <atomic>
#include <memory>

#include "audiounits/devices/JackLibrary.h"
#include "midi/MidiRing.h"
#include "midi/backends/MidiBackend.h"

/// One JACK MIDI port of ours and the ring between it and the other threads. In each cycle either
/// what the port has heard goes into the ring, or what is in the ring goes out of the port; nothing
/// there waits, takes memory or logs.
class JackMidiLane {
  public:
    explicit JackMidiLane(MidiBackend::Lane lane);

    const MidiBackend::Lane& wanted() const { return m_lane; }

    /// [keeper] The port, or null; while the lane is in the cycle it does not change.
    jack_port_t* port() const { return m_port.load(); }
    void setPort(jack_port_t* port) { m_port.store(port); }
    /// [keeper] What is sent waits for it.
    void setConnected(bool connected) { m_connected.store(connected); }

    /// [any thread but render] Somebody has pulled a cable: the notes that came through it, and
    /// perhaps through others of this port, are released in the next cycle.
    void releaseSoon() { m_release.store(true); }
    /// [keeper] The same at once, for a lane that is not in the cycle.
    void releaseNow();

    /// [render] Whether there is something for the MIDI thread.
    bool cycle(const JackLibrary& jack, jack_client_t* client, jack_nframes_t frames) noexcept;

    /// [control] False if something was dropped.
    bool send(const MIDIPacketList& list);
    /// [control] What has not gone out is forgotten.
    void flush() { m_flush.store(true); }

    /// [MIDI thread] All that was heard, in lists as long as `memory` allows.
    void deliver(MidiBackendHost& host, std::span<std::uint8_t> memory);

  private:
    using Message = std::array<std::uint8_t, MidiRing::kLongest>;

    bool hear(const JackLibrary& jack, jack_client_t* client, jack_nframes_t frames,
              void* buffer) noexcept;
    void speak(const JackLibrary& jack, void* buffer) noexcept;

    const MidiBackend::Lane m_lane;
    MidiRing m_ring;
    MIDITimeStamp m_time = 0;  // of what was heard last
    const std::unique_ptr<Message> m_message = std::make_unique<Message>();  // of the consumer
    std::atomic<jack_port_t*> m_port{nullptr};
    std::atomic<bool> m_connected{false};
    std::atomic<bool> m_release{false};
    std::atomic<bool> m_flush{false};
};
