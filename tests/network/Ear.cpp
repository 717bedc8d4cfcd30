#include "Ear.h"

#include <algorithm>
#include <cstdio>

#include "midi/MidiMessages.h"
#include "midi/MidiPacketList.h"

Ear::Ear(const std::string& name)
    : m_session(std::make_shared<NetworkBoard>(name)), m_midi(m_session.board()) {
    m_session.setConnectionPolicy(MIDINetworkSession::ConnectionPolicy::anyone);
    m_session.setEnabled(true);
    m_midi.start(*this, 1);
}

Ear::~Ear() {
    m_midi.stop();
}

std::uint16_t Ear::port() {
    waitFor([this] { return m_session.port() != 0; });
    return m_session.port();
}

void Ear::connect(std::uint16_t port) {
    m_session.connect("127.0.0.1:" + std::to_string(port));
}

void Ear::play(const std::vector<std::uint8_t>& bytes) {
    std::vector<std::uint32_t> memory(200);
    auto& list = *reinterpret_cast<MIDIPacketList*>(memory.data());
    MIDIPacketListAdd(list, memory.size() * 4, MIDIPacketListInit(list), 0, bytes);
    m_midi.send(m_destination, list);
}

/// What only the board tells is looked at again and again.
bool Ear::waitFor(const std::function<bool()>& condition) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    std::unique_lock held(m_mutex);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end)
            return false;
        m_news.wait_for(held, std::chrono::milliseconds(10));
    }
    return true;
}

std::set<int> Ear::held() const {
    std::lock_guard guard(m_mutex);
    return m_held;
}

std::vector<std::string> Ear::story() const {
    std::lock_guard guard(m_mutex);
    return m_story;
}

void Ear::portsChanged(std::size_t, std::vector<MidiBackendPort> ports) {
    std::lock_guard guard(m_mutex);
    for (const MidiBackendPort& port : m_sources) {
        if (std::ranges::find(ports, port) == ports.end())
            m_story.push_back('-' + port.name);
    }
    for (const MidiBackendPort& port : ports) {
        const bool known = std::ranges::find(m_sources, port) != m_sources.end();
        if (port.isSource && !known)
            m_story.push_back('+' + port.name);
        if (!port.isSource || !known)
            m_midi.open({++m_lastLane, port.isSource, port.key, port.instance, port.name});
        if (!port.isSource)
            m_destination = m_lastLane;
    }
    std::erase_if(ports, [](const MidiBackendPort& port) { return !port.isSource; });
    m_sources = std::move(ports);
    m_news.notify_all();
}

void Ear::received(MIDIEndpointRef, const MIDIPacketList& list) {
    std::lock_guard guard(m_mutex);
    const MIDIPacket* packet = list.packet;
    for (std::uint32_t i = 0; i < list.numPackets; ++i, packet = MIDIPacketNext(packet)) {
        std::string text;
        for (const std::uint8_t byte : MIDIPacketData(*packet)) {
            char digits[3];
            std::snprintf(digits, sizeof digits, "%02x", byte);
            text += digits;
        }
        m_story.push_back(text);
        forEachMidiNote(MIDIPacketData(*packet), [this](MidiNoteEvent note) {
            note.down ? void(m_held.insert(note.note)) : void(m_held.erase(note.note));
        });
    }
    m_news.notify_all();
}
