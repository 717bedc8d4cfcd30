#pragma once

#include <algorithm>
#include <mutex>
#include <string>
#include <vector>

#include "midi/MidiPacketList.h"
#include "midi/backends/MidiBackend.h"

/// MIDI ports that a test plugs in and pulls out, and what was sent to them.
class HandMadeMidi final : public MidiBackend {
  public:
    bool available() const override { return true; }
    void start(MidiBackendHost& host, std::size_t number) override {
        m_host = &host;
        m_number = number;
        tell();
    }
    void stop() override { m_stopped = true; }
    void open(const Lane& lane) override {
        std::lock_guard guard(m_mutex);
        m_lanes.push_back(lane);
    }
    void close(MIDIEndpointRef lane) override {
        std::lock_guard guard(m_mutex);
        std::erase_if(m_lanes, [lane](const Lane& other) { return other.endpoint == lane; });
    }
    OSStatus send(MIDIEndpointRef lane, const MIDIPacketList& list) override {
        const auto data = MIDIPacketData(list.packet[0]);
        m_sent.push_back(keyOf(lane) + " " + std::to_string(data.size()));
        return keyOf(lane) == "broken" ? kMIDIMessageSendErr : noErr;
    }
    void flush(MIDIEndpointRef lane) override { m_sent.push_back(keyOf(lane) + " flush"); }

    void plug(const std::string& key, bool isSource = true, bool network = false) {
        MIDIProperties entity;
        if (network)
            entity.emplace(kMIDIPropertyNetworkSession, "x");
        m_ports.push_back({key, ++m_instances, key, isSource, entity});
        tell();
    }
    void pull(const std::string& key) {
        std::erase_if(m_ports, [&](const MidiBackendPort& port) { return port.key == key; });
        tell();
    }
    /// As the thread of a back end does.
    void play(const std::string& key, const std::vector<std::uint8_t>& bytes) {
        std::vector<std::uint8_t> memory(bytes.size() + 300);
        auto& list = *reinterpret_cast<MIDIPacketList*>(memory.data());
        MIDIPacketListAdd(list, memory.size(), MIDIPacketListInit(list), 1, bytes);
        m_host->received(laneOf(key), list);
    }
    std::size_t lanes() const { return m_lanes.size(); }
    bool stopped() const { return m_stopped; }
    std::vector<std::string> takeSent() { return std::exchange(m_sent, {}); }

  private:
    void tell() { m_host->portsChanged(m_number, m_ports); }
    /// Of a source of that key or a virtual destination of that name; once closed, as it was.
    MIDIEndpointRef laneOf(const std::string& key) {
        std::lock_guard guard(m_mutex);
        for (const Lane& lane : m_lanes) {
            if (lane.toUs && (lane.key == key || lane.name == key))
                m_played = lane.endpoint;
        }
        return m_played;
    }
    std::string keyOf(MIDIEndpointRef lane) const {
        const auto found = std::ranges::find(m_lanes, lane, &Lane::endpoint);
        return found == m_lanes.end() ? "?" : found->key.empty() ? found->name : found->key;
    }

    MidiBackendHost* m_host = nullptr;
    std::size_t m_number = 0;
    std::uint64_t m_instances = 0;
    std::vector<MidiBackendPort> m_ports;
    std::mutex m_mutex;  // of the lanes
    std::vector<Lane> m_lanes;
    MIDIEndpointRef m_played = 0;
    std::vector<std::string> m_sent;
    bool m_stopped = false;
};
