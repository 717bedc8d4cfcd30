#pragma once

#include <condition_variable>
#include <map>
#include <mutex>
#include <thread>

#include "midi/HeldNotes.h"
#include "midi/backends/AlsaSequencerLibrary.h"
#include "midi/backends/MidiBackend.h"

/// The kernel's sequencer: hardware, and programs that use it. Calls of it do not wait, so they are
/// made where they are wanted, under one mutex; one thread reads what arrives. Where there is no
/// sequencer it looks once a second whether one has come, and is quiet.
class AlsaMidi final : public MidiBackend {
  public:
    AlsaMidi();

    bool available() const override;
    void start(MidiBackendHost& host, std::size_t number) override;
    void stop() override;
    void open(const Lane& lane) override;
    void close(MIDIEndpointRef lane) override;
    OSStatus send(MIDIEndpointRef lane, const MIDIPacketList& list) override;
    /// What is sent goes out at once: there is nothing to forget.
    void flush(MIDIEndpointRef) override {}

  private:
    struct OpenLane {
        Lane lane;
        snd_seq_addr_t peer{};  // of a lane with a key
        int port = -1;          // ours; -1: none yet
        HeldNotes held;
        bool holdsMore = false;
    };
    /// Bytes on their way to the host, which is told outside the mutex.
    struct Heard {
        MIDIEndpointRef lane;
        std::vector<std::uint8_t> bytes;
    };

    void run();
    bool openSequencer();
    void closeSequencer();
    void build(OpenLane& lane);
    void dissolve(OpenLane& lane);
    std::vector<Heard> read();
    void take(const snd_seq_event_t& event, std::vector<Heard>& heard);
    void takeNotice(const snd_seq_event_t& event, std::vector<Heard>& heard);
    void release(OpenLane& lane, std::vector<Heard>& heard);
    OpenLane* laneOf(const snd_seq_event_t& event);
    OpenLane* find(MIDIEndpointRef lane);
    std::vector<MidiBackendPort> listPorts();
    void addPorts(int client, std::vector<MidiBackendPort>& ports);
    void tell(const std::vector<Heard>& heard);
    bool pause();

    const AlsaSequencerLibrary* const m_alsa;
    MidiBackendHost* m_host = nullptr;
    std::size_t m_number = 0;
    std::thread m_thread;

    std::mutex m_mutex;
    std::condition_variable m_stop;
    bool m_stopping = false;
    snd_seq_t* m_seq = nullptr;
    snd_midi_event_t* m_decoder = nullptr;
    int m_input = -1;   // where all sources are connected to
    int m_output = -1;  // where all that goes to a destination comes from
    std::vector<OpenLane> m_lanes;
    bool m_portsChanged = false;
    std::map<std::string, std::uint64_t> m_instances;
    std::uint64_t m_starts = 0;
    std::vector<MidiBackendPort> m_told;  // of the thread
};
