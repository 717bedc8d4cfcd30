#include "midi/MidiNoteQueue.h"

#include <gtest/gtest.h>

#include <random>
#include <set>
#include <thread>

namespace {
using Kind = MidiMessage::Kind;
}

TEST(MidiNoteQueue, aFloodStaysBoundedAndLeavesNoNoteSounding) {
    std::set<int> sounding;
    std::size_t performed = 0;
    MidiNoteQueue queue([&](const MidiMessage& message) {
        ++performed;
        if (message.kind == Kind::down)
            sounding.insert(message.data1);
        else if (message.kind == Kind::up)
            sounding.erase(message.data1);
    });
    std::mt19937 random(5);
    for (int storm = 0; storm < 20; ++storm) {
        performed = 0;
        for (int i = 0; i < 50000; ++i)
            queue.push({Kind(random() % 3), std::uint8_t(random() % 128), 1,
                        MIDIEndpointRef(random() % 3)});
        for (std::uint8_t note = 0; note < 128; ++note)
            queue.push({Kind::up, note, 0, 1});
        RunLoop::main().turn();
        EXPECT_LE(performed, MidiNoteQueue::kCapacity);
        EXPECT_TRUE(sounding.empty()) << sounding.size() << " hang";
    }
    EXPECT_GT(queue.dropped(), 0u);
}

TEST(MidiNoteQueue, keepsTheOrderBetweenTwoThreads) {
    constexpr std::uint32_t kMessages = 200000;
    std::uint32_t last = 0;
    std::uint64_t performed = 0;
    bool inOrder = true;
    MidiNoteQueue queue([&](const MidiMessage& message) {
        inOrder = inOrder && message.source > last;
        last = message.source;
        ++performed;
    });
    std::atomic<bool> done{false};
    std::thread midi([&] {
        for (std::uint32_t i = 1; i <= kMessages; ++i)
            queue.push({Kind::down, std::uint8_t(i % 128), 1, i});
        done = true;
    });
    while (!done)
        RunLoop::main().turn();
    midi.join();
    RunLoop::main().turn();
    EXPECT_TRUE(inOrder);
    EXPECT_EQ(performed + queue.dropped(), kMessages);
}

TEST(MidiNoteQueue, aFloodOfControllersStaysBoundedAndLosesNoReleaseUnnoticed) {
    std::vector<MidiMessage> performed;
    MidiNoteQueue queue([&](const MidiMessage& message) { performed.push_back(message); });
    for (int i = 0; i < 20000; ++i)
        queue.push({Kind::control, std::uint8_t(i % 60), 1, 1});
    EXPECT_GT(queue.dropped(), 0u);
    queue.push({Kind::control, kMidiSustain, 127, 1});
    RunLoop::main().turn();
    EXPECT_LE(performed.size(), MidiNoteQueue::kCapacity);
    EXPECT_EQ(performed.back().kind, Kind::control) << "a pedal that has gone down is not missed";
    for (int i = 0; i < 20000; ++i)
        queue.push({Kind::control, std::uint8_t(i % 60), 1, 1});
    queue.push({Kind::control, kMidiSustain, 0, 1});
    performed.clear();
    RunLoop::main().turn();
    EXPECT_EQ(performed.back().kind, Kind::flood);

    performed.clear();
    for (std::uint8_t value = 0; value < 128; ++value) {
        queue.push({Kind::bend, 0, value, 1});
        queue.push({Kind::control, 7, value, 1, std::uint8_t(value / 64)});
    }
    for (std::uint8_t value = 0; value < 128; ++value)
        queue.push({Kind::control, 7, value, 1, 3});
    for (std::uint8_t value = 0; value < 128; ++value)
        queue.push({Kind::control, kMidiSustain, value, 1, 3});
    RunLoop::main().turn();
    ASSERT_EQ(performed.size(), 256u + 1 + 128) << "the last position of what moves on";
    EXPECT_EQ(performed[256].data2, 127);
}
