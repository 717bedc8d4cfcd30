#include "midi/network/IncomingStream.h"

#include <gtest/gtest.h>

#include <map>
#include <random>
#include <vector>

#include "HeardMessages.h"
#include "midi/network/OutgoingStream.h"

namespace {

/// What one packet brings; -1 for no journal, else the checkpoint of one with these two lists.
struct Packet {
    std::uint16_t sequence;
    Bytes commands;
    int checkpoint = -1;
    Bytes on = {}, off = {};  // notes of channel 0
};

Bytes journalOf(const Packet& packet) {
    Bytes bytes = {0x20,
                   std::uint8_t(packet.checkpoint >> 8),
                   std::uint8_t(packet.checkpoint),
                   0,
                   std::uint8_t(3 + 2 + 2 * packet.on.size() + 16),
                   0x08,
                   std::uint8_t(packet.on.size()),
                   0x0F};
    for (const std::uint8_t note : packet.on) {
        bytes.push_back(note);
        bytes.push_back(0x80 | 99);
    }
    Bytes bits(16);
    for (const std::uint8_t note : packet.off)
        bits[note / 8] = std::uint8_t(bits[note / 8] | 0x80 >> note % 8);
    bytes.insert(bytes.end(), bits.begin(), bits.end());
    return bytes;
}

Messages heardFrom(const std::vector<Packet>& packets) {
    HeardMessages heard;
    IncomingStream stream(heard);
    for (const Packet& packet : packets) {
        RtpMidiPacket parsed;
        const Bytes journal = journalOf(packet);
        parsed.sequence = packet.sequence;
        parsed.commands = packet.commands;
        if (packet.checkpoint >= 0)
            parsed.journal = journal;
        stream.take(parsed);
    }
    return heard.messages;
}

Bytes on(std::uint8_t note, std::uint8_t velocity = 100) {
    return {0x90, note, velocity};
}
Bytes off(std::uint8_t note) {
    return {0x80, note, 64};
}

}  // namespace

TEST(IncomingStream, ordersWhatComesOutOfOrder) {
    const Bytes pedal = {0xB0, 64, 127}, up = {0xB0, 64, 0}, clock = {0xF8};
    struct {
        const char* what;
        std::vector<Packet> packets;
        Messages heard;
    } const table[] = {
        {"repeated",
         {{1, on(1)}, {1, on(1)}, {2, off(1)}, {1, on(1)}, {2, off(1)}},
         {on(1), off(1)}},
        {"across the end of the numbers", {{65535, on(1)}, {0, off(1)}}, {on(1), off(1)}},
        {"a late start counts if nothing newer was told",
         {{1, on(1)}, {3, on(3)}, {2, on(2)}},
         {on(1), on(3), on(2)}},
        {"a late one counts once", {{1, {}}, {3, on(3)}, {2, on(2)}, {2, on(2)}}, {on(3), on(2)}},
        {"a late start of what has ended does not", {{1, {}}, {3, off(2)}, {2, on(2)}}, {off(2)}},
        {"a late end counts", {{1, on(1)}, {3, on(3)}, {2, off(1)}}, {on(1), on(3), off(1)}},
        {"a late end of what began again does not",
         {{1, on(1)}, {3, on(1, 9)}, {2, off(1)}},
         {on(1), on(1, 9)}},
        {"controllers likewise", {{1, pedal}, {3, up}, {2, pedal}}, {pedal, up}},
        {"other late ones do not", {{1, on(1)}, {3, on(3)}, {2, clock}}, {on(1), on(3)}},
        {"a journal first, its own commands then",
         {{1, on(1)}, {3, on(4), 1, {3}, {1}}},
         {on(1), off(1), on(3, 99), on(4)}},
        {"what a journal has told is not told again",
         {{1, on(1)}, {3, {}, 1, {3}, {1}}, {2, on(3)}},
         {on(1), off(1), on(3, 99)}},
        {"no loss, no journal", {{1, on(1)}, {2, {}, 1, {3}, {1}}}, {on(1)}},
        {"held already", {{1, on(1)}, {3, {}, 1, {1}}}, {on(1)}},
        {"held since before the checkpoint", {{1, on(1)}, {3, {}, 2, {3}}}, {on(1), on(3, 99)}},
        {"nobody knows whether it is held",
         {{1, on(1)}, {4, {}, 3, {3}}},
         {on(1), off(1), on(3, 99)}},
        {"the next journal repairs, not the next packet",
         {{1, on(1)}, {3, on(3)}, {4, on(4), 1, {}, {1}}},
         {on(1), on(3), off(1), on(4)}},
        {"a journal before anything was heard", {{9, on(4), 1, {3}, {1}}}, {on(3, 99), on(4)}},
        {"begun again", {{1, on(1)}, {40001, on(2)}, {40002, on(3)}}, {on(1), off(1), on(3)}},
        {"one stray packet is no new beginning",
         {{1, on(1)}, {40001, on(2)}, {2, on(3)}},
         {on(1), on(3)}},
    };
    for (const auto& [what, packets, heard] : table) {
        SCOPED_TRACE(what);
        EXPECT_EQ(heardFrom(packets), heard);
    }
}

// After each packet that is not late the receiver holds what the sender held when it was sent,
// whatever was lost before it.
TEST(IncomingStream, everyNoteIsRightAtEachPacketWithAJournal) {
    for (unsigned seed = 1; seed <= 20; ++seed) {
        SCOPED_TRACE(seed);
        std::mt19937 random(seed);
        HeardMessages heard;
        IncomingStream incoming(heard);
        OutgoingStream outgoing(1, std::uint16_t(random()));
        PeerNotes sender;
        std::vector<std::pair<Bytes, ChannelNotes>> sent;
        std::vector<std::size_t> flying;
        const auto emit = [&](std::span<const std::uint8_t> datagram) {
            sent.push_back({{datagram.begin(), datagram.end()}, sender.held()});
        };
        std::size_t newest = 0;
        int compared = 0;
        for (int step = 0; step < 2000; ++step) {
            Bytes messages;
            for (int count = int(random() % 4); count >= 0; --count) {
                const Bytes message = {std::uint8_t((random() % 2 ? 0x90 : 0x80) | random() % 2),
                                       std::uint8_t(60 + random() % 12),
                                       std::uint8_t(random() % 3)};
                sender.follow(message);
                messages.insert(messages.end(), message.begin(), message.end());
            }
            outgoing.send(messages, 0, emit);
            if (random() % 10 >= 3)
                flying.insert(flying.end(), 1 + random() % 4 / 3, sent.size() - 1);
            for (int arrivals = int(random() % 4); arrivals > 0 && !flying.empty(); --arrivals) {
                const std::size_t which = random() % std::min<std::size_t>(flying.size(), 30);
                const std::size_t index = flying[which];
                flying.erase(flying.begin() + std::ptrdiff_t(which));
                incoming.take(*RtpMidiPacket::read(sent[index].first));
                if (index >= newest) {
                    newest = index;
                    ++compared;
                    ASSERT_EQ(heard.notes.held(), sent[index].second) << step;
                }
                ASSERT_EQ(heard.notes.held(), sent[newest].second) << step;
                if (random() % 20 == 0)
                    outgoing.heardThrough(incoming.heardThrough());
            }
        }
        EXPECT_GT(compared, 300);
    }
}
