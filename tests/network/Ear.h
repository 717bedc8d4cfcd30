#pragma once

#include <condition_variable>
#include <mutex>
#include <set>

#include "midi/network/NetworkMidi.h"

/// A session over real sockets and whoever hears it, in place of the MIDI services: listens to
/// every source and keeps what happened. Ends its session with itself.
class Ear final : public MidiBackendHost {
  public:
    explicit Ear(const std::string& name);
    ~Ear() override;

    MIDINetworkSession& session() { return m_session; }
    NetworkBoard& board() { return *m_session.board(); }
    void stop() { m_midi.stop(); }
    /// Its control port, once it is open.
    std::uint16_t port();
    /// Invites whoever listens at a port of this machine.
    void connect(std::uint16_t port);
    /// To the first destination.
    void play(const std::vector<std::uint8_t>& bytes);

    /// Waits at most twenty seconds for that to be so; whether it is.
    bool waitFor(const std::function<bool()>& condition);
    // What has been heard; to be asked within waitFor, or after it.
    std::set<int> held() const;
    /// "+name" and "-name" of sources, and each message in hexadecimal digits, in their order.
    std::vector<std::string> story() const;
    std::size_t sources() const { return m_sources.size(); }

  private:
    void portsChanged(std::size_t backend, std::vector<MidiBackendPort> ports) override;
    void received(MIDIEndpointRef lane, const MIDIPacketList& list) override;

    mutable std::recursive_mutex m_mutex;
    std::condition_variable_any m_news;
    std::vector<MidiBackendPort> m_sources;
    std::set<int> m_held;
    std::vector<std::string> m_story;
    MIDIEndpointRef m_lastLane = 0;
    std::atomic<MIDIEndpointRef> m_destination{0};
    MIDINetworkSession m_session;
    NetworkMidi m_midi;
};
