#pragma once

#include <array>
#include <atomic>
#include <memory>
#include <string>

#include "midi/backends/JackMidiLane.h"

/// The MIDI ports that we have in a client of the JACK server, and the lane that uses each.
///
/// A port that was made stays until its client is closed. The server's library walks a client's
/// ports on a thread of its own, without a lock, whenever the server works out latencies: one that
/// is given back in the middle of that ends the program. So a port that has lost its lane is
/// disconnected, is silent, and waits for the next lane.
///
/// [keeper] but for the cycle.
class JackMidiPorts {
  public:
    using LanePointer = std::shared_ptr<JackMidiLane>;

    explicit JackMidiPorts(const JackLibrary* jack) : m_jack(jack) {}

    bool has(const LanePointer& lane) const;
    /// Gives the lane a port and connects it to where it leads. Nothing if the server will not.
    void add(jack_client_t* client, const LanePointer& lane);
    /// Takes the ports from the lanes for which it holds; their notes are released. Without a
    /// client the server is not asked to disconnect them. Whether there was any.
    template <typename Predicate>
    bool removeIf(jack_client_t* client, Predicate predicate) {
        bool any = false;
        for (Place& place : m_places) {
            if (!place.lane || !predicate(place.lane))
                continue;
            remove(client, place);
            any = true;
        }
        return any;
    }
    /// The client is about to be closed; no lane may be left. Returns when no cycle uses a port.
    void forget();

    /// [render] Moves messages between ports and lanes; whether any was heard.
    bool cycle(jack_client_t* client, jack_nframes_t frames) noexcept;

  private:
    static constexpr std::size_t kMost = 128;

    struct Place {
        std::string name;  // of the port, within the client
        bool toUs = false;
        LanePointer lane;
        // Of the cycle.
        std::atomic<jack_port_t*> port{nullptr};
        std::atomic<JackMidiLane*> cycleLane{nullptr};
    };

    Place* findPlace(const MidiBackend::Lane& wanted);
    std::string portName(const MidiBackend::Lane& wanted, const Place& place) const;
    jack_port_t* makePort(jack_client_t* client, const Place& place) const;
    void remove(jack_client_t* client, Place& place);
    void silence(jack_port_t* port, jack_nframes_t frames) noexcept;
    void waitForCycle() const;

    const JackLibrary* const m_jack;
    std::array<Place, kMost> m_places;
    std::atomic<int> m_inCycle{0};
};
