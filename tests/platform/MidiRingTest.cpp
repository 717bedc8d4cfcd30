#include "midi/MidiRing.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <set>
#include <thread>
#include <vector>

#include "midi/MidiMessages.h"
#include "midi/MidiPacketList.h"

namespace {

using Bytes = std::vector<std::uint8_t>;

/// What a synthesiser would sound that hears all that comes out of the ring.
class Listener {
  public:
    bool hear(MidiRing& ring) {
        const auto message = ring.pop(m_memory);
        if (!message)
            return false;
        EXPECT_GE(message->time, m_time) << "messages must keep their order";
        m_time = message->time;
        forEachMidiNote(message->bytes, [this](MidiNoteEvent event) {
            event.down ? (void)m_sounding.insert(event.note) : (void)m_sounding.erase(event.note);
        });
        return true;
    }
    void hearAll(MidiRing& ring) {
        while (hear(ring)) {
        }
    }
    const std::set<std::uint8_t>& sounding() const { return m_sounding; }

  private:
    Bytes m_memory = Bytes(MidiRing::kLongest);
    MIDITimeStamp m_time = 0;
    std::set<std::uint8_t> m_sounding;
};

/// Notes of several channels, some with velocity 0, several to a message, long exclusives between.
Bytes randomMessage(std::mt19937& random) {
    if (random() % 50 == 0) {
        Bytes exclusive(random() % 3000 + 2, 0x11);
        exclusive.front() = 0xF0;
        exclusive.back() = 0xF7;
        return exclusive;
    }
    Bytes notes;
    for (auto left = random() % 3 + 1; left > 0; --left) {
        const auto status = std::uint8_t((random() % 2 ? 0x90 : 0x80) + random() % 16);
        notes.insert(notes.end(),
                     {status, std::uint8_t(random() % 128), std::uint8_t(random() % 3)});
    }
    return notes;
}

}  // namespace

TEST(MidiRing, aFloodCostsNotesButNeverTheirReleases) {
    std::mt19937 random(7);
    MidiRing ring;
    Listener listener;
    MIDITimeStamp time = 1000;
    for (int storm = 0; storm < 30; ++storm) {
        const std::uint64_t dropped = ring.dropped();
        for (int i = 0; i < 20000; ++i, time += 1000)
            ring.push(time, randomMessage(random));
        EXPECT_GT(ring.dropped(), dropped) << "nothing was in short supply";
        // Any release that is heard now ends its note, however full the ring is.
        for (std::uint8_t note = 0; note < 128; ++note, time += 1000)
            ring.push(time, Bytes{0x80, note, 0});
        listener.hearAll(ring);
        EXPECT_TRUE(listener.sounding().empty()) << listener.sounding().size() << " hang";
    }
}

TEST(MidiRing, aPulledCableReleasesWhatCameThroughIt) {
    MidiRing ring;
    Listener listener;
    ring.push(1, Bytes{0x90, 60, 1, 0x95, 64, 1});
    ring.push(2, Bytes{0x95, 60, 0});
    listener.hearAll(ring);
    EXPECT_EQ(listener.sounding(), std::set<std::uint8_t>{64});
    ring.pushReleases(3);
    listener.hearAll(ring);
    EXPECT_TRUE(listener.sounding().empty());

    // Pedals too, on every channel; but nothing where none is down.
    ring.push(4, Bytes{0x90, 60, 1, 0x80, 60, 0});
    ring.push(4, Bytes{0xB7, 64, 127});
    listener.hearAll(ring);
    ring.pushReleases(5);
    Bytes memory(MidiRing::kLongest);
    const auto lifted = ring.pop(memory);
    ASSERT_TRUE(lifted);
    const Bytes reset{0xB7, 121, 0, 0xB7, 123, 0};
    EXPECT_FALSE(std::ranges::search(lifted->bytes, reset).empty());
    ring.pushReleases(6);
    EXPECT_FALSE(ring.pop(memory));
}

TEST(MidiRing, twoThreadsLoseNothingThatWasTaken) {
    constexpr int kMessages = 100000;
    std::mt19937 random(11);
    MidiRing ring;
    std::atomic<bool> done{false};
    std::atomic<std::uint64_t> taken{0};
    std::thread producer([&] {
        for (int i = 1; i <= kMessages; ++i) {
            // The first byte tells the length, so that a torn message gives itself away.
            Bytes message(random() % 40 + 1, std::uint8_t(i));
            message[0] = std::uint8_t(message.size());
            taken += ring.push(MIDITimeStamp(i), message);
        }
        done = true;
    });
    Bytes memory(MidiRing::kLongest);
    std::uint64_t heard = 0;
    MIDITimeStamp last = 0;
    bool whole = true;
    for (bool more = true; more;) {
        more = !done;
        while (const auto message = ring.pop(memory)) {
            whole = whole && message->time > last && message->bytes[0] == message->bytes.size() &&
                    message->bytes.back() ==
                        (message->bytes.size() > 1 ? std::uint8_t(message->time) : 1);
            last = message->time;
            ++heard;
        }
    }
    producer.join();
    EXPECT_TRUE(whole);
    EXPECT_EQ(heard, taken);
    EXPECT_EQ(taken + ring.dropped(), std::uint64_t(kMessages));
}

TEST(MidiPacketList, packetsAreFoundAgainBehindTheRoundedEndOfThoseBefore) {
    std::vector<std::uint8_t> memory(3 * 65600);
    auto& list = *reinterpret_cast<MIDIPacketList*>(memory.data());
    const std::size_t lengths[] = {0, 1, 2, 3, 4, 255, 256, 257, 65535};
    MIDIPacket* next = MIDIPacketListInit(list);
    for (const std::size_t length : lengths) {
        next = MIDIPacketListAdd(list, memory.size(), next, length + 7,
                                 Bytes(length, std::uint8_t(length)));
        ASSERT_NE(next, nullptr);
    }
    EXPECT_EQ(MIDIPacketListAdd(list, memory.size(), next, 0, Bytes(65536)), nullptr);
    EXPECT_EQ(MIDIPacketListAdd(
                  list, std::size_t(reinterpret_cast<std::uint8_t*>(next) - memory.data()) + 12,
                  next, 0, Bytes(3)),
              nullptr);
    const MIDIPacket* packet = list.packet;
    ASSERT_EQ(list.numPackets, std::size(lengths));
    for (const std::size_t length : lengths) {
        EXPECT_EQ((reinterpret_cast<const std::uint8_t*>(packet) - memory.data()) % 4, 0);
        EXPECT_EQ(MIDITimeStamp{packet->timeStamp}, length + 7);
        const auto data = MIDIPacketData(*packet);
        EXPECT_EQ(Bytes(data.begin(), data.end()), Bytes(length, std::uint8_t(length)));
        packet = MIDIPacketNext(packet);
    }
}
