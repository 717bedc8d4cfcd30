#pragma once

#include <semaphore.h>

#include <chrono>
#include <condition_variable>
#include <map>
#include <mutex>
#include <thread>

#include "audiounits/devices/JackGuest.h"
#include "midi/backends/JackMidiPorts.h"

/// MIDI ports of the JACK server: in the client that plays, else in one of its own, "ombrix-midi".
///
/// Three threads. The server's cycle moves messages between ports and rings and raises a semaphore
/// if there were any, which is all that it does. The MIDI thread sleeps on that semaphore and hands
/// on what is in the rings: it never calls the server. The keeper does everything that may wait for
/// the server: opens the client, looks which ports there are after each notice of the server, and
/// makes ports and connections what is wanted, from nothing after each return of the server.
class JackMidi final : public MidiBackend,
                       public JackGuest,
                       public std::enable_shared_from_this<JackMidi> {
  public:
    JackMidi();
    ~JackMidi() override;

    bool available() const override { return m_jack != nullptr; }
    void start(MidiBackendHost& host, std::size_t number) override;
    /// Threads that hang in a server's library are left to end by themselves.
    void stop() override;
    void open(const Lane& lane) override;
    void close(MIDIEndpointRef lane) override;
    OSStatus send(MIDIEndpointRef lane, const MIDIPacketList& list) override;
    void flush(MIDIEndpointRef lane) override;

    void join(jack_client_t* client) override;
    void leave(jack_client_t* client) override;
    void process(jack_client_t* client, jack_nframes_t frames) noexcept override;
    void portRegistered(jack_client_t* client, jack_port_id_t port) override;
    void portUnregistered(jack_client_t* client) override;
    void portsDisconnected(jack_client_t* client, jack_port_id_t a, jack_port_id_t b) override;
    void serverGone(jack_client_t* client) override;

  private:
    using LanePointer = JackMidiPorts::LanePointer;
    using Time = std::chrono::steady_clock::time_point;

    void keep();
    void look();
    void wake();
    void openOwn();
    void setOwnCallbacks(jack_client_t* client);
    void take(jack_client_t* client, bool own);
    void letGo(bool serverLives);
    bool silent();
    std::vector<MidiBackendPort> listPorts();
    void settle();
    LanePointer find(MIDIEndpointRef lane);
    std::vector<LanePointer> lanes();
    void deliver();

    const JackLibrary* const m_jack;
    MidiBackendHost* m_host = nullptr;
    std::size_t m_number = 0;
    std::thread m_keeper;
    std::thread m_midiThread;
    sem_t m_heard;

    // What is wanted and what the server has said.
    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_news = false;
    bool m_stopping = false;
    bool m_finished = false;
    bool m_gone = false;  // the server of m_client
    std::vector<LanePointer> m_lanes;
    std::map<std::string, std::uint64_t, std::less<>> m_instances;  // of ports, by name
    std::uint64_t m_registrations = 0;

    // Held through every call of the server. Before m_mutex.
    std::mutex m_jackMutex;
    jack_client_t* m_client = nullptr;
    bool m_own = false;
    /// The client that plays has not left, though its server may be gone. A process that opens
    /// another one at a new server before that cannot close the old one any more.
    bool m_hosted = false;
    Time m_ownFrom;  // no client of our own is opened earlier
    Time m_nextHealth;
    std::uint64_t m_lastCycles = 0;
    int m_silentLooks = 0;
    std::vector<MidiBackendPort> m_told;
    JackMidiPorts m_ports;

    // Of the cycle.
    std::atomic<jack_client_t*> m_cycleClient{nullptr};
    std::atomic<std::uint64_t> m_cycles{0};
};
