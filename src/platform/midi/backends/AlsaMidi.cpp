#include "midi/backends/AlsaMidi.h"

#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <utility>

#include "midi/MidiClock.h"
#include "midi/MidiMessages.h"
#include "midi/MidiPacketList.h"

namespace {

constexpr const char* kDevice = "/dev/snd/seq";
constexpr int kLongestPoll = 100;  // milliseconds until a wish to stop is seen
constexpr std::size_t kLongestMessage = kMIDILongestPacket;
constexpr unsigned kReadable = SND_SEQ_PORT_CAP_READ | SND_SEQ_PORT_CAP_SUBS_READ;
constexpr unsigned kWritable = SND_SEQ_PORT_CAP_WRITE | SND_SEQ_PORT_CAP_SUBS_WRITE;

std::string keyOf(int client, int port) {
    return std::to_string(client) + ':' + std::to_string(port);
}

}  // namespace

AlsaMidi::AlsaMidi() : m_alsa(AlsaSequencerLibrary::get()) {}

bool AlsaMidi::available() const {
    return m_alsa && access(kDevice, R_OK | W_OK) == 0;
}

void AlsaMidi::start(MidiBackendHost& host, std::size_t number) {
    m_host = &host;
    m_number = number;
    if (m_alsa)
        m_thread = std::thread([this] { run(); });
}

void AlsaMidi::stop() {
    if (!m_thread.joinable())
        return;
    {
        std::lock_guard guard(m_mutex);
        m_stopping = true;
    }
    m_stop.notify_all();
    m_thread.join();
}

/// Waits for a second; false when it is time to stop.
bool AlsaMidi::pause() {
    std::unique_lock held(m_mutex);
    return !m_stop.wait_for(held, std::chrono::seconds(1), [this] { return m_stopping; });
}

void AlsaMidi::run() {
    while (!available() || !openSequencer()) {
        if (!pause())
            return;
    }
    pollfd readable{};
    m_alsa->snd_seq_poll_descriptors(m_seq, &readable, 1, POLLIN);
    for (;;) {
        std::vector<Heard> heard;
        std::vector<MidiBackendPort> ports;
        bool changed;
        {
            std::lock_guard guard(m_mutex);
            if (m_stopping)
                break;
            heard = read();
            changed = std::exchange(m_portsChanged, false);
            if (changed)
                ports = listPorts();
        }
        tell(heard);
        if (changed && ports != m_told) {
            m_told = ports;
            m_host->portsChanged(m_number, std::move(ports));
        }
        poll(&readable, 1, kLongestPoll);
    }
    std::lock_guard guard(m_mutex);
    closeSequencer();
}

bool AlsaMidi::openSequencer() {
    std::lock_guard guard(m_mutex);
    if (m_alsa->snd_seq_open(&m_seq, "default", SND_SEQ_OPEN_DUPLEX, SND_SEQ_NONBLOCK) < 0)
        return false;
    m_alsa->snd_seq_set_client_name(m_seq, "ombrix");
    m_alsa->snd_midi_event_new(kLongestMessage, &m_decoder);
    m_alsa->snd_midi_event_no_status(m_decoder, 1);
    m_input = m_alsa->snd_seq_create_simple_port(
        m_seq, "midi_in", SND_SEQ_PORT_CAP_WRITE | SND_SEQ_PORT_CAP_NO_EXPORT,
        SND_SEQ_PORT_TYPE_APPLICATION);
    m_output = m_alsa->snd_seq_create_simple_port(
        m_seq, "midi_out", SND_SEQ_PORT_CAP_READ | SND_SEQ_PORT_CAP_NO_EXPORT,
        SND_SEQ_PORT_TYPE_APPLICATION);
    m_alsa->snd_seq_connect_from(m_seq, m_input, SND_SEQ_CLIENT_SYSTEM,
                                 SND_SEQ_PORT_SYSTEM_ANNOUNCE);
    std::ranges::for_each(m_lanes, [this](OpenLane& lane) { build(lane); });
    m_portsChanged = true;
    return true;
}

void AlsaMidi::closeSequencer() {
    m_alsa->snd_midi_event_free(m_decoder);
    m_alsa->snd_seq_close(m_seq);
    m_seq = nullptr;
}

void AlsaMidi::open(const Lane& lane) {
    std::lock_guard guard(m_mutex);
    if (find(lane.endpoint))
        return;
    OpenLane opened;
    opened.lane = lane;
    int client = 0, port = 0;
    if (std::sscanf(lane.key.c_str(), "%d:%d", &client, &port) == 2)
        opened.peer = {static_cast<unsigned char>(client), static_cast<unsigned char>(port)};
    m_lanes.push_back(opened);
    if (m_seq)
        build(m_lanes.back());
}

void AlsaMidi::build(OpenLane& lane) {
    if (!lane.lane.key.empty()) {
        lane.port = lane.lane.toUs ? m_input : m_output;
        if (lane.lane.toUs)
            m_alsa->snd_seq_connect_from(m_seq, m_input, lane.peer.client, lane.peer.port);
        return;
    }
    lane.port = m_alsa->snd_seq_create_simple_port(
        m_seq, lane.lane.name.c_str(), lane.lane.toUs ? kWritable : kReadable,
        SND_SEQ_PORT_TYPE_MIDI_GENERIC | SND_SEQ_PORT_TYPE_APPLICATION);
}

void AlsaMidi::close(MIDIEndpointRef ref) {
    std::lock_guard guard(m_mutex);
    OpenLane* const lane = find(ref);
    if (!lane)
        return;
    if (m_seq)
        dissolve(*lane);
    std::erase_if(m_lanes, [ref](const OpenLane& other) { return other.lane.endpoint == ref; });
}

void AlsaMidi::dissolve(OpenLane& lane) {
    if (lane.lane.key.empty())
        m_alsa->snd_seq_delete_simple_port(m_seq, lane.port);
    else if (lane.lane.toUs)
        m_alsa->snd_seq_disconnect_from(m_seq, m_input, lane.peer.client, lane.peer.port);
}

OSStatus AlsaMidi::send(MIDIEndpointRef ref, const MIDIPacketList& list) {
    std::lock_guard guard(m_mutex);
    const OpenLane* const lane = find(ref);
    snd_midi_event_t* encoder = nullptr;
    if (!lane || !m_seq || m_alsa->snd_midi_event_new(kLongestMessage, &encoder) < 0)
        return kMIDIMessageSendErr;
    bool whole = true;
    const MIDIPacket* packet = list.packet;
    for (std::uint32_t i = 0; i < list.numPackets; ++i, packet = MIDIPacketNext(packet)) {
        auto bytes = MIDIPacketData(*packet);
        while (!bytes.empty()) {
            snd_seq_event_t event;
            snd_seq_ev_clear(&event);
            const long used = m_alsa->snd_midi_event_encode(
                encoder, bytes.data(), static_cast<long>(bytes.size()), &event);
            if (used <= 0)
                break;
            bytes = bytes.subspan(static_cast<std::size_t>(used));
            if (event.type == SND_SEQ_EVENT_NONE)
                continue;
            snd_seq_ev_set_source(&event, static_cast<unsigned char>(lane->port));
            snd_seq_ev_set_direct(&event);
            if (lane->lane.key.empty())
                snd_seq_ev_set_subs(&event);
            else
                snd_seq_ev_set_dest(&event, lane->peer.client, lane->peer.port);
            whole = m_alsa->snd_seq_event_output_direct(m_seq, &event) >= 0 && whole;
        }
    }
    m_alsa->snd_midi_event_free(encoder);
    return whole ? noErr : kMIDIMessageSendErr;
}

/// When the kernel had to drop something, releases may be among it: all that is held is released.
/// So may notices of ports be.
std::vector<AlsaMidi::Heard> AlsaMidi::read() {
    std::vector<Heard> heard;
    snd_seq_event_t* event = nullptr;
    for (int left = 1000; left > 0; --left) {
        const int status = m_alsa->snd_seq_event_input(m_seq, &event);
        if (status == -ENOSPC) {
            m_portsChanged = true;
            for (OpenLane& lane : m_lanes)
                release(lane, heard);
        } else if (status < 0) {
            break;
        } else if (event->source.client == SND_SEQ_CLIENT_SYSTEM) {
            takeNotice(*event, heard);
        } else {
            take(*event, heard);
        }
    }
    return heard;
}

void AlsaMidi::takeNotice(const snd_seq_event_t& event, std::vector<Heard>& heard) {
    m_portsChanged = true;
    if (event.type == SND_SEQ_EVENT_PORT_START)
        m_instances[keyOf(event.data.addr.client, event.data.addr.port)] = ++m_starts;
    if (event.type != SND_SEQ_EVENT_PORT_UNSUBSCRIBED)
        return;
    const snd_seq_addr_t& to = event.data.connect.dest;
    for (OpenLane& lane : m_lanes) {
        if (lane.lane.key.empty() && to.client == m_alsa->snd_seq_client_id(m_seq) &&
            to.port == lane.port)
            release(lane, heard);
    }
}

void AlsaMidi::take(const snd_seq_event_t& event, std::vector<Heard>& heard) {
    OpenLane* const lane = laneOf(event);
    if (!lane)
        return;
    const bool exclusive = event.type == SND_SEQ_EVENT_SYSEX;
    std::vector<std::uint8_t> bytes(exclusive ? event.data.ext.len + 1 : 12);
    const long length = m_alsa->snd_midi_event_decode(m_decoder, bytes.data(),
                                                      static_cast<long>(bytes.size()), &event);
    m_alsa->snd_midi_event_init(m_decoder);
    if (length <= 0)
        return;
    bytes.resize(std::min(static_cast<std::size_t>(length), kMIDILongestPacket));
    forEachMidiNote(bytes, [&](MidiNoteEvent note) { lane->held.note(note.note, note.down); });
    lane->holdsMore = lane->holdsMore || midiHoldsMore(bytes);
    heard.push_back({lane->lane.endpoint, std::move(bytes)});
}

void AlsaMidi::release(OpenLane& lane, std::vector<Heard>& heard) {
    for (std::size_t note = 0; note < 128 && lane.held.any(); ++note) {
        const auto number = static_cast<std::uint8_t>(note);
        if (lane.held.holds(number))
            heard.push_back({lane.lane.endpoint, {0x80, number, 0}});
        lane.held.note(number, false);
    }
    if (std::exchange(lane.holdsMore, false))
        heard.push_back({lane.lane.endpoint, {kMidiReleaseAll.begin(), kMidiReleaseAll.end()}});
}

AlsaMidi::OpenLane* AlsaMidi::laneOf(const snd_seq_event_t& event) {
    const auto found = std::ranges::find_if(m_lanes, [&](const OpenLane& lane) {
        if (!lane.lane.toUs || event.dest.port != lane.port)
            return false;
        return lane.lane.key.empty() ||
               (event.source.client == lane.peer.client && event.source.port == lane.peer.port);
    });
    return found == m_lanes.end() ? nullptr : &*found;
}

AlsaMidi::OpenLane* AlsaMidi::find(MIDIEndpointRef ref) {
    const auto found = std::ranges::find_if(
        m_lanes, [ref](const OpenLane& lane) { return lane.lane.endpoint == ref; });
    return found == m_lanes.end() ? nullptr : &*found;
}

void AlsaMidi::tell(const std::vector<Heard>& heard) {
    std::vector<std::uint8_t> memory;
    for (const Heard& one : heard) {
        memory.resize(std::max(sizeof(MIDIPacketList), one.bytes.size() + 32));
        auto& list = *reinterpret_cast<MIDIPacketList*>(memory.data());
        MIDIPacketListAdd(list, memory.size(), MIDIPacketListInit(list), midiNow(), one.bytes);
        m_host->received(one.lane, list);
    }
}

std::vector<MidiBackendPort> AlsaMidi::listPorts() {
    std::vector<MidiBackendPort> ports;
    snd_seq_client_info_t* client = nullptr;
    if (m_alsa->snd_seq_client_info_malloc(&client) < 0)
        return ports;
    m_alsa->snd_seq_client_info_set_client(client, -1);
    while (m_alsa->snd_seq_query_next_client(m_seq, client) >= 0) {
        const int number = m_alsa->snd_seq_client_info_get_client(client);
        if (number != SND_SEQ_CLIENT_SYSTEM && number != m_alsa->snd_seq_client_id(m_seq))
            addPorts(number, ports);
    }
    m_alsa->snd_seq_client_info_free(client);
    return ports;
}

void AlsaMidi::addPorts(int client, std::vector<MidiBackendPort>& ports) {
    snd_seq_port_info_t* port = nullptr;
    if (m_alsa->snd_seq_port_info_malloc(&port) < 0)
        return;
    m_alsa->snd_seq_port_info_set_client(port, client);
    m_alsa->snd_seq_port_info_set_port(port, -1);
    while (m_alsa->snd_seq_query_next_port(m_seq, port) >= 0) {
        const unsigned can = m_alsa->snd_seq_port_info_get_capability(port);
        const std::string key = keyOf(client, m_alsa->snd_seq_port_info_get_port(port));
        const auto instance = m_instances.try_emplace(key, 0).first->second;
        const auto add = [&](bool isSource) {
            ports.push_back(
                {key, instance, m_alsa->snd_seq_port_info_get_name(port), isSource, {}});
        };
        if (can & SND_SEQ_PORT_CAP_NO_EXPORT)
            continue;
        if ((can & kReadable) == kReadable)
            add(true);
        if ((can & kWritable) == kWritable)
            add(false);
    }
    m_alsa->snd_seq_port_info_free(port);
}
