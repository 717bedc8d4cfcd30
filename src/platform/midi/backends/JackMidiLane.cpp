#include "midi/backends/JackMidiLane.h"

#include <algorithm>

#include "midi/MidiClock.h"
#include "midi/MidiMessages.h"
#include "midi/MidiPacketList.h"

namespace {

constexpr std::uint8_t kExclusive = 0xF0;
constexpr std::uint8_t kEndOfExclusive = 0xF7;

constexpr double kNanoseconds = 1e9;

/// Length of the first message of a packet: a JACK event is one message.
std::size_t messageLength(std::span<const std::uint8_t> bytes) {
    const auto fixed = std::min(bytes.size(), 1 + midiDataBytes(bytes[0]));
    if (bytes[0] != kExclusive)
        return fixed;
    const auto end = std::ranges::find(bytes, kEndOfExclusive);
    return static_cast<std::size_t>(end - bytes.begin()) + (end == bytes.end() ? 0 : 1);
}

}  // namespace

JackMidiLane::JackMidiLane(MidiBackend::Lane lane) : m_lane(std::move(lane)) {}

void JackMidiLane::releaseNow() {
    m_ring.pushReleases(midiNow());
}

bool JackMidiLane::cycle(const JackLibrary& jack, jack_client_t* client,
                         jack_nframes_t frames) noexcept {
    void* const buffer = jack.jack_port_get_buffer(m_port.load(std::memory_order_relaxed), frames);
    if (!buffer)
        return false;
    if (m_lane.toUs)
        return hear(jack, client, frames, buffer);
    speak(jack, buffer);
    return false;
}

/// The server's own estimate of a frame's time is off by tenths of a second after it has lost
/// periods, so the clock is asked. What is heard in a cycle has come during the one before. Times
/// never go back, though cycles may begin late.
bool JackMidiLane::hear(const JackLibrary& jack, jack_client_t* client, jack_nframes_t frames,
                        void* buffer) noexcept {
    const std::uint32_t count = jack.jack_midi_get_event_count(buffer);
    const bool released = m_release.load(std::memory_order_relaxed) && m_release.exchange(false);
    if (count == 0 && !released)
        return false;
    const MIDITimeStamp end = midiNow();
    const double perFrame = kNanoseconds / jack.jack_get_sample_rate(client);
    for (std::uint32_t i = 0; i < count; ++i) {
        jack_midi_event_t event;
        if (jack.jack_midi_event_get(&event, buffer, i) != 0)
            continue;
        const double ago = perFrame * (frames - std::min(event.time, frames));
        m_time = std::max(m_time, end - static_cast<MIDITimeStamp>(ago));
        m_ring.push(m_time, {event.buffer, event.size});
    }
    if (released)
        m_ring.pushReleases(m_time = std::max(m_time, end));
    return true;
}

void JackMidiLane::speak(const JackLibrary& jack, void* buffer) noexcept {
    jack.jack_midi_clear_buffer(buffer);
    const bool flush = m_flush.load(std::memory_order_relaxed) && m_flush.exchange(false);
    if (!m_connected.load(std::memory_order_relaxed) && !flush)
        return;
    while (const auto message = m_ring.pop(*m_message)) {
        if (!flush)
            jack.jack_midi_event_write(buffer, 0, message->bytes.data(), message->bytes.size());
    }
}

bool JackMidiLane::send(const MIDIPacketList& list) {
    bool whole = true;
    const MIDIPacket* packet = list.packet;
    for (std::uint32_t i = 0; i < list.numPackets; ++i, packet = MIDIPacketNext(packet)) {
        auto bytes = MIDIPacketData(*packet);
        while (!bytes.empty()) {
            const std::size_t length = messageLength(bytes);
            whole = m_ring.push(packet->timeStamp, bytes.first(length)) && whole;
            bytes = bytes.subspan(length);
        }
    }
    return whole;
}

void JackMidiLane::deliver(MidiBackendHost& host, std::span<std::uint8_t> memory) {
    auto& list = *reinterpret_cast<MIDIPacketList*>(memory.data());
    MIDIPacket* next = MIDIPacketListInit(list);
    const auto add = [&](const MidiRing::Message& message) {
        return MIDIPacketListAdd(list, memory.size(), next, message.time, message.bytes);
    };
    while (const auto message = m_ring.pop(*m_message)) {
        MIDIPacket* added = add(*message);
        if (!added) {
            host.received(m_lane.endpoint, list);
            next = MIDIPacketListInit(list);
            added = add(*message);
        }
        next = added ? added : next;
    }
    if (list.numPackets > 0)
        host.received(m_lane.endpoint, list);
}
