#pragma once

#include <mutex>
#include <optional>
#include <vector>

#include "midi/backends/MidiBackend.h"

/// Which endpoints lead to and from whom, and what waits to be sent to them. A peer's number is the
/// instance of its ports. [any thread but render]
class NetworkLanes {
  public:
    void open(const MidiBackend::Lane& lane);
    void close(MIDIEndpointRef lane);
    /// The source that stands for a peer, if somebody listens to it.
    std::optional<MIDIEndpointRef> hearing(std::uint32_t peer) const;

    /// Bytes of whole messages for a peer.
    struct Outgoing {
        MIDIEndpointRef lane;
        std::uint32_t peer;
        std::vector<std::uint8_t> bytes;
    };
    /// False if there is no such lane or no room.
    bool queue(MIDIEndpointRef lane, const MIDIPacketList& list);
    void forget(MIDIEndpointRef lane);
    std::vector<Outgoing> takeQueued();

  private:
    static constexpr std::size_t kMostQueued = 256 << 10;  // bytes

    mutable std::mutex m_mutex;
    std::vector<MidiBackend::Lane> m_lanes;
    std::vector<Outgoing> m_queued;
    std::size_t m_queuedBytes = 0;
};
