#include "midi/backends/JackMidi.h"

#include <algorithm>

#include "audiounits/devices/JackCycle.h"
#include "log/Log.h"
#include "midi/MidiPacketList.h"
#include "midi/backends/JackPortList.h"

namespace {

using std::chrono::milliseconds;

// How often a server is looked for while there is none.
constexpr milliseconds kTick{500};
// Between two looks: a client that comes or goes does so with several ports.
constexpr milliseconds kPause{5};
// The client that plays is waited for before one of our own is opened.
constexpr milliseconds kPatience{700};
constexpr milliseconds kStopPatience{600};
constexpr int kSilentLooks = 4;  // kTick apart, without a cycle, before a server counts as dead
constexpr const char* kOwnName = "ombrix-midi";

}  // namespace

JackMidi::JackMidi() : m_jack(JackLibrary::get()), m_ports(m_jack) {
    sem_init(&m_heard, 0, 0);
}

JackMidi::~JackMidi() {
    sem_destroy(&m_heard);
}

void JackMidi::start(MidiBackendHost& host, std::size_t number) {
    m_host = &host;
    m_number = number;
    if (!m_jack)
        return;
    m_ownFrom = std::chrono::steady_clock::now() + kPatience;
    JackGuest::setCurrent(shared_from_this());
    m_keeper = std::thread([self = shared_from_this()] { self->keep(); });
    m_midiThread = std::thread([self = shared_from_this()] { self->deliver(); });
}

void JackMidi::stop() {
    if (!m_keeper.joinable())
        return;
    JackGuest::setCurrent(nullptr);
    std::unique_lock held(m_mutex);
    m_stopping = true;
    m_changed.notify_all();
    sem_post(&m_heard);
    const bool done = m_changed.wait_for(held, kStopPatience, [this] { return m_finished; });
    held.unlock();
    m_midiThread.join();
    if (done)
        m_keeper.join();
    else
        m_keeper.detach();
}

void JackMidi::open(const Lane& lane) {
    std::lock_guard guard(m_mutex);
    const bool known = std::ranges::any_of(m_lanes, [&](const LanePointer& other) {
        return other->wanted().endpoint == lane.endpoint;
    });
    if (known)
        return;
    m_lanes.push_back(std::make_shared<JackMidiLane>(lane));
    wake();
}

void JackMidi::close(MIDIEndpointRef lane) {
    std::lock_guard guard(m_mutex);
    if (std::erase_if(m_lanes, [lane](auto& other) { return other->wanted().endpoint == lane; }))
        wake();
}

OSStatus JackMidi::send(MIDIEndpointRef lane, const MIDIPacketList& list) {
    const LanePointer found = find(lane);
    return found && found->send(list) ? noErr : kMIDIMessageSendErr;
}

void JackMidi::flush(MIDIEndpointRef lane) {
    if (const LanePointer found = find(lane))
        found->flush();
}

JackMidi::LanePointer JackMidi::find(MIDIEndpointRef lane) {
    std::lock_guard guard(m_mutex);
    const auto found = std::ranges::find_if(
        m_lanes, [lane](auto& other) { return other->wanted().endpoint == lane; });
    return found == m_lanes.end() ? nullptr : *found;
}

std::vector<JackMidi::LanePointer> JackMidi::lanes() {
    std::lock_guard guard(m_mutex);
    return m_lanes;
}

/// Under m_mutex.
void JackMidi::wake() {
    m_news = true;
    m_changed.notify_all();
}

void JackMidi::keep() {
    std::unique_lock held(m_mutex);
    while (!m_stopping) {
        m_news = false;
        held.unlock();
        look();
        held.lock();
        m_changed.wait_for(held, kTick, [this] { return m_stopping || m_news; });
        m_changed.wait_for(held, kPause, [this] { return m_stopping; });
    }
    held.unlock();
    {
        std::lock_guard jack(m_jackMutex);
        letGo(true);
    }
    held.lock();
    m_finished = true;
    m_changed.notify_all();
}

void JackMidi::look() {
    std::vector<MidiBackendPort> ports;
    {
        std::lock_guard jack(m_jackMutex);
        bool gone;
        {
            std::lock_guard guard(m_mutex);
            gone = std::exchange(m_gone, false);
        }
        if (gone || silent())
            letGo(false);
        if (!m_client && !m_hosted && std::chrono::steady_clock::now() >= m_ownFrom)
            openOwn();
        if (m_client)
            ports = listPorts();
        settle();
        if (ports == m_told)
            return;
        m_told = ports;
    }
    m_host->portsChanged(m_number, std::move(ports));
}

/// Some servers stop calling a client without a word: then it is opened anew, as the client that
/// plays is by its owner. Counted in looks, not in seconds: this whole program may have been
/// stopped.
bool JackMidi::silent() {
    const auto time = std::chrono::steady_clock::now();
    if (!m_client || !m_own || time < m_nextHealth)
        return false;
    m_nextHealth = time + kTick;
    const std::uint64_t cycles = m_cycles.load(std::memory_order_relaxed);
    m_silentLooks = cycles == m_lastCycles ? m_silentLooks + 1 : 0;
    m_lastCycles = cycles;
    return m_silentLooks >= kSilentLooks;
}

void JackMidi::openOwn() {
    jack_status_t status{};
    jack_client_t* const client = m_jack->jack_client_open(kOwnName, JackNoStartServer, &status);
    if (!client)
        return;
    take(client, true);
    setOwnCallbacks(client);
    if (m_jack->jack_activate(client) != 0)
        letGo(false);
}

void JackMidi::setOwnCallbacks(jack_client_t* client) {
    m_jack->jack_set_process_callback(
        client,
        [](jack_nframes_t frames, void* self) {
            auto* const midi = static_cast<JackMidi*>(self);
            runJackCycle([&] { midi->process(midi->m_cycleClient.load(), frames); });
            return 0;
        },
        this);
    m_jack->jack_set_port_registration_callback(
        client,
        [](jack_port_id_t port, int registered, void* self) {
            auto* const midi = static_cast<JackMidi*>(self);
            if (registered)
                midi->portRegistered(midi->m_cycleClient.load(), port);
            else
                midi->portUnregistered(midi->m_cycleClient.load());
        },
        this);
    m_jack->jack_set_port_connect_callback(
        client,
        [](jack_port_id_t a, jack_port_id_t b, int connected, void* self) {
            auto* const midi = static_cast<JackMidi*>(self);
            if (!connected)
                midi->portsDisconnected(midi->m_cycleClient.load(), a, b);
        },
        this);
    m_jack->jack_on_info_shutdown(
        client,
        [](jack_status_t, const char*, void* self) {
            auto* const midi = static_cast<JackMidi*>(self);
            midi->serverGone(midi->m_cycleClient.load());
        },
        this);
}

void JackMidi::join(jack_client_t* client) {
    std::lock_guard jack(m_jackMutex);
    letGo(true);
    take(client, false);
    m_hosted = true;
    std::lock_guard guard(m_mutex);
    wake();
}

void JackMidi::leave(jack_client_t* client) {
    std::lock_guard jack(m_jackMutex);
    if (m_client == client)
        letGo(false);
    m_hosted = false;
    m_ownFrom = std::chrono::steady_clock::now() + kPatience;
    std::lock_guard guard(m_mutex);
    wake();
}

void JackMidi::take(jack_client_t* client, bool own) {
    m_client = client;
    m_own = own;
    m_cycleClient = client;
    m_silentLooks = 0;
    std::lock_guard guard(m_mutex);
    m_gone = false;
    m_instances.clear();
    Log::line("midi: ports in the JACK client of %s", own ? "its own" : "the sound");
}

/// All ports go, those of others too as far as anyone is told. Closing our own client is right
/// whether the server lives or not; the other one is its owner's.
void JackMidi::letGo(bool serverLives) {
    jack_client_t* const stays = serverLives && !m_own ? m_client : nullptr;
    if (m_ports.removeIf(stays, [](const LanePointer&) { return true; }))
        sem_post(&m_heard);
    m_cycleClient = nullptr;
    m_ports.forget();
    if (m_client && m_own)
        m_jack->jack_client_close(m_client);
    m_client = nullptr;
    m_own = false;
    // Whatever comes next is told anew: no source of the old client is a source of the new one.
    std::lock_guard guard(m_mutex);
    m_instances.clear();
}

std::vector<MidiBackendPort> JackMidi::listPorts() {
    auto ports = listJackMidiPorts(*m_jack, m_client);
    std::lock_guard guard(m_mutex);
    std::erase_if(m_instances, [&](const auto& known) {
        return std::ranges::find(ports, known.first, &MidiBackendPort::key) == ports.end();
    });
    for (MidiBackendPort& port : ports)
        port.instance = m_instances.try_emplace(port.key, ++m_registrations).first->second;
    return ports;
}

/// Makes ports and connections what is wanted.
void JackMidi::settle() {
    const auto wanted = lanes();
    const bool any = m_ports.removeIf(m_client, [&](const LanePointer& lane) {
        return std::ranges::find(wanted, lane) == wanted.end();
    });
    if (any)
        sem_post(&m_heard);
    for (const LanePointer& lane : wanted) {
        if (m_client && !m_ports.has(lane))
            m_ports.add(m_client, lane);
    }
}

void JackMidi::process(jack_client_t* client, jack_nframes_t frames) noexcept {
    m_cycles.fetch_add(1, std::memory_order_relaxed);
    if (client && client == m_cycleClient.load() && m_ports.cycle(client, frames))
        sem_post(&m_heard);
}

void JackMidi::portRegistered(jack_client_t* client, jack_port_id_t id) {
    jack_port_t* const port = client ? m_jack->jack_port_by_id(client, id) : nullptr;
    const char* const name = port ? m_jack->jack_port_name(port) : nullptr;
    std::lock_guard guard(m_mutex);
    if (name)
        m_instances[name] = ++m_registrations;
    wake();
}

void JackMidi::portUnregistered(jack_client_t*) {
    std::lock_guard guard(m_mutex);
    wake();
}

void JackMidi::portsDisconnected(jack_client_t* client, jack_port_id_t a, jack_port_id_t b) {
    if (!client)
        return;
    jack_port_t* const ends[] = {m_jack->jack_port_by_id(client, a),
                                 m_jack->jack_port_by_id(client, b)};
    for (const LanePointer& lane : lanes()) {
        jack_port_t* const port = lane->port();
        if (port && std::ranges::find(ends, port) != std::end(ends))
            lane->releaseSoon();
    }
}

void JackMidi::serverGone(jack_client_t* client) {
    if (!client || client != m_cycleClient.load())
        return;
    std::lock_guard guard(m_mutex);
    m_gone = true;
    wake();
}

void JackMidi::deliver() {
    std::vector<std::uint8_t> memory(2 * kMIDILongestPacket);
    for (;;) {
        while (sem_wait(&m_heard) != 0) {
        }
        {
            std::lock_guard guard(m_mutex);
            if (m_stopping)
                return;
        }
        for (const LanePointer& lane : lanes()) {
            if (lane->wanted().toUs)
                lane->deliver(*m_host, memory);
        }
    }
}
