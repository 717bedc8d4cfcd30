#include "midi/network/NetworkLanes.h"

#include <algorithm>
#include <utility>

#include "midi/MidiPacketList.h"

/// Ports of our own are for programs on this machine.
void NetworkLanes::open(const MidiBackend::Lane& lane) {
    if (lane.key.empty())
        return;
    std::lock_guard guard(m_mutex);
    if (std::ranges::find(m_lanes, lane.endpoint, &MidiBackend::Lane::endpoint) == m_lanes.end())
        m_lanes.push_back(lane);
}

void NetworkLanes::close(MIDIEndpointRef lane) {
    std::lock_guard guard(m_mutex);
    std::erase_if(m_lanes, [lane](const auto& other) { return other.endpoint == lane; });
}

std::optional<MIDIEndpointRef> NetworkLanes::hearing(std::uint32_t peer) const {
    std::lock_guard guard(m_mutex);
    const auto found = std::ranges::find_if(
        m_lanes, [peer](const auto& lane) { return lane.toUs && lane.instance == peer; });
    return found == m_lanes.end() ? std::nullopt : std::optional(found->endpoint);
}

bool NetworkLanes::queue(MIDIEndpointRef ref, const MIDIPacketList& list) {
    std::lock_guard guard(m_mutex);
    const auto lane = std::ranges::find(m_lanes, ref, &MidiBackend::Lane::endpoint);
    if (lane == m_lanes.end())
        return false;
    Outgoing out{ref, static_cast<std::uint32_t>(lane->instance), {}};
    const MIDIPacket* packet = list.packet;
    for (std::uint32_t i = 0; i < list.numPackets; ++i, packet = MIDIPacketNext(packet)) {
        const auto bytes = MIDIPacketData(*packet);
        out.bytes.insert(out.bytes.end(), bytes.begin(), bytes.end());
    }
    if (m_queuedBytes + out.bytes.size() > kMostQueued)
        return false;
    m_queuedBytes += out.bytes.size();
    m_queued.push_back(std::move(out));
    return true;
}

void NetworkLanes::forget(MIDIEndpointRef lane) {
    std::lock_guard guard(m_mutex);
    std::erase_if(m_queued, [&](const Outgoing& out) {
        if (out.lane == lane)
            m_queuedBytes -= out.bytes.size();
        return out.lane == lane;
    });
}

std::vector<NetworkLanes::Outgoing> NetworkLanes::takeQueued() {
    std::lock_guard guard(m_mutex);
    m_queuedBytes = 0;
    return std::exchange(m_queued, {});
}
