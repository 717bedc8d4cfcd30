#include "midi/backends/JackMidiLane.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>
#include <vector>

#include "RenderWatch.h"
#include "audiounits/RenderScope.h"
#include "midi/MidiMessages.h"
#include "midi/MidiPacketList.h"

namespace {

/// What a server's port would hold in a cycle.
struct Port {
    std::vector<std::vector<jack_midi_data_t>> in;
    std::size_t out = 0;
};

JackLibrary tableOf(Port& port) {
    static Port* current;
    current = &port;
    JackLibrary table;
    table.jack_port_get_buffer = [](jack_port_t*, jack_nframes_t) { return (void*)current; };
    table.jack_get_sample_rate = [](jack_client_t*) { return jack_nframes_t{44100}; };
    table.jack_midi_get_event_count = [](void*) { return std::uint32_t(current->in.size()); };
    table.jack_midi_event_get = [](jack_midi_event_t* event, void*, std::uint32_t i) {
        *event = {i, current->in[i].size(), current->in[i].data()};
        return 0;
    };
    table.jack_midi_clear_buffer = [](void*) { current->out = 0; };
    table.jack_midi_event_write = [](void*, jack_nframes_t, const jack_midi_data_t*, std::size_t) {
        ++current->out;
        return 0;
    };
    return table;
}

class Host final : public MidiBackendHost {
  public:
    void portsChanged(std::size_t, std::vector<MidiBackendPort>) override {}
    void received(MIDIEndpointRef, const MIDIPacketList& list) override {
        const MIDIPacket* packet = list.packet;
        for (std::uint32_t i = 0; i < list.numPackets; ++i, packet = MIDIPacketNext(packet)) {
            const MIDITimeStamp time = packet->timeStamp;  // no reference to it: it is packed
            EXPECT_GE(time, last);
            last = time;
            forEachMidiNote(MIDIPacketData(*packet), [this](MidiNoteEvent event) {
                event.down ? (void)sounding.insert(event.note) : (void)sounding.erase(event.note);
                notes += event.down;
            });
        }
    }
    MIDITimeStamp last = 0;
    int notes = 0;
    std::set<int> sounding;
};

}  // namespace

TEST(JackMidiLane, aCycleTakesNoMemoryAndNoLockAndCallsNoSystemHoweverMuchIsHeard) {
    Port port;
    for (int i = 0; i < 600; ++i)
        port.in.push_back({0x90, jack_midi_data_t(i % 128), 1});
    port.in.push_back(std::vector<jack_midi_data_t>(20000, 0xF0));
    const JackLibrary jack = tableOf(port);
    JackMidiLane in({1, true, "key", 0, ""});
    JackMidiLane out({2, false, "key", 0, ""});
    out.setConnected(true);
    MIDIPacketList list;
    MIDIPacketListAdd(list, sizeof list, MIDIPacketListInit(list), 0,
                      std::vector<std::uint8_t>{0x90, 1, 2, 0xF0, 1, 2, 3, 0xF7, 0xF8, 0x80, 1, 0});
    EXPECT_TRUE(out.send(list));
    RenderWatch watch;
    for (int cycle = 0; cycle < 20; ++cycle) {
        const RenderScope scope;
        EXPECT_TRUE(in.cycle(jack, nullptr, 1024));
        if (cycle == 19)
            in.releaseSoon();
        if (cycle == 0)
            out.cycle(jack, nullptr, 1024);
    }
    EXPECT_EQ(port.out, 4u) << "one event for each message";
    port.in.clear();
    {
        const RenderScope scope;
        EXPECT_TRUE(in.cycle(jack, nullptr, 1024));
        EXPECT_FALSE(in.cycle(jack, nullptr, 1024));
    }
    // Where a sanitizer is built in it watches in its own way.
    EXPECT_EQ(watch.renders() > 0, RenderWatch::working());
    EXPECT_THAT(watch.violations(), testing::IsEmpty());
    Host host;
    std::vector<std::uint8_t> memory(100000);
    in.deliver(host, memory);
    EXPECT_GT(host.notes, 600);
    EXPECT_THAT(host.sounding, testing::IsEmpty()) << "of a pulled cable";
}
