#include "midi/network/RtpMidiPacket.h"

#include <gtest/gtest.h>

#include <vector>

#include "HeardMessages.h"
#include "midi/network/MidiCommandList.h"

namespace {

/// Header of packet 0x1234 of stream 0x89ABCDEF.
Bytes packet(const Bytes& payload, std::uint8_t first = 0x80, const Bytes& more = {}) {
    Bytes bytes = {first, 0xE1, 0x12, 0x34, 0, 0, 0, 1, 0x89, 0xAB, 0xCD, 0xEF};
    for (const Bytes& part : {more, payload}) {
        for (const std::uint8_t byte : part)
            bytes.push_back(byte);
    }
    return bytes;
}

/// A short list without a journal.
Bytes list(const Bytes& commands, std::uint8_t flags = 0) {
    Bytes payload = {std::uint8_t(flags | commands.size())};
    payload.insert(payload.end(), commands.begin(), commands.end());
    return packet(payload);
}

Messages heardFrom(const std::vector<Bytes>& packets) {
    HeardMessages heard;
    ExclusiveJoiner exclusive;
    for (const Bytes& bytes : packets) {
        if (const auto parsed = RtpMidiPacket::read(bytes))
            MidiCommandList(*parsed, exclusive, heard).read();
    }
    return heard.messages;
}

const Bytes kOn = {0x90, 60, 100};

}  // namespace

TEST(RtpMidiPacket, takesHardHeadersApart) {
    const Bytes shortList = {0x03, 0x90, 60, 100};
    struct {
        const char* what;
        Bytes bytes;
        bool good;
        std::size_t journal;
    } const table[] = {
        {"plain", packet(shortList), true, 0},
        {"long list", packet({0x80, 0x03, 0x90, 60, 100}), true, 0},
        {"journal", packet({0x43, 0x90, 60, 100, 0x80, 1, 2}), true, 3},
        {"bytes behind the list, no journal", packet({0x03, 0x90, 60, 100, 9, 9}), true, 0},
        {"two contributing sources", packet(shortList, 0x82, Bytes(8)), true, 0},
        {"extension", packet(shortList, 0x90, {1, 2, 0, 1, 9, 9, 9, 9}), true, 0},
        {"padding", packet({0x03, 0x90, 60, 100, 0, 0, 3}, 0xA0), true, 0},
        {"all padding", packet({4, 4, 4, 4}, 0xA0), false, 0},
        {"padding of nothing", packet({0x03, 0x90, 60, 0}, 0xA0), false, 0},
        {"more padding than bytes", packet({0x03, 0x90, 60, 5}, 0xA0), false, 0},
        {"extension beyond the end", packet(shortList, 0x90, {1, 2, 0xFF, 0xFF}), false, 0},
        {"sources beyond the end", packet(shortList, 0x8F), false, 0},
        {"version 1", packet(shortList, 0x40), false, 0},
        {"list beyond the end", packet({0x04, 0x90, 60, 100}), false, 0},
        {"long list beyond the end", packet({0x8F, 0xFF, 0x90, 60, 100}), false, 0},
        {"long list without its length", packet({0x80}), false, 0},
        {"nothing behind the header", packet({}), false, 0},
        {"half a header", Bytes(7, 0x80), false, 0},
        {"nothing", {}, false, 0},
    };
    for (const auto& [what, bytes, good, journal] : table) {
        SCOPED_TRACE(what);
        const auto parsed = RtpMidiPacket::read(bytes);
        ASSERT_EQ(parsed.has_value(), good);
        EXPECT_EQ(heardFrom({bytes}), good ? Messages{kOn} : Messages{});
        if (good) {
            EXPECT_EQ(parsed->sequence, 0x1234);
            EXPECT_EQ(parsed->ssrc, 0x89ABCDEF);
            EXPECT_EQ(parsed->journal.size(), journal);
        }
    }
}

TEST(RtpMidiPacket, readsHardLists) {
    const Bytes off = {0x80, 60, 64};
    struct {
        const char* what;
        std::vector<Bytes> packets;
        Messages heard;
    } const table[] = {
        {"running status",
         {list({0x90, 60, 100, 0, 61, 100, 0, 60, 0})},
         {kOn, {0x90, 61, 100}, {0x90, 60, 0}}},
        {"a time first", {list({0x05, 0x90, 60, 100}, 0x20)}, {kOn}},
        {"times of four bytes",
         {list({0xFF, 0xFF, 0xFF, 0x7F, 0x90, 60, 100, 0x81, 0, 0x80, 60, 64}, 0x20)},
         {kOn, off}},
        {"a time of five bytes",
         {list({0x90, 60, 100, 0x81, 0x81, 0x81, 0x81, 0, 0x80, 60, 64})},
         {kOn}},
        {"a time at the end", {list({0x90, 60, 100, 0})}, {kOn}},
        {"only a time", {list({0x81}, 0x20)}, {}},
        {"empty", {list({}), list({}, 0x20)}, {}},
        {"data without a status", {list({60, 100})}, {}},
        {"status does not run on to the next packet",
         {list({0x90, 60, 100}), list({61, 100})},
         {kOn}},
        {"a system message ends running",
         {list({0x90, 60, 100, 0, 0xF3, 1, 0, 61, 100})},
         {kOn, {0xF3, 1}}},
        {"a real-time one does not",
         {list({0x90, 60, 100, 0, 0xF8, 0, 61, 100})},
         {kOn, {0xF8}, {0x90, 61, 100}}},
        {"real time inside a message", {list({0x90, 0xF8, 60, 0xFE, 100})}, {{0xF8}, {0xFE}, kOn}},
        {"cut in a message", {list({0x90, 60, 100, 0, 0x80, 60})}, {kOn}},
        {"a status among the data", {list({0x90, 60, 0x80, 60, 64})}, {}},
        {"all lengths",
         {list({0xC1, 1, 0, 0xD1, 2, 0, 0xE1, 3, 4, 0, 0xF1, 5}),
          list({0xF2, 1, 2, 0, 0xF6, 0, 0xA0, 1, 2})},
         {{0xC1, 1}, {0xD1, 2}, {0xE1, 3, 4}, {0xF1, 5}, {0xF2, 1, 2}, {0xF6}, {0xA0, 1, 2}}},
        {"exclusive", {list({0xF0, 1, 2, 0xF7, 0, 0x90, 60, 100})}, {{0xF0, 1, 2, 0xF7}, kOn}},
        {"exclusive in segments, real time inside",
         {list({0xF0, 1, 0xF0}), list({0x90, 60, 100, 0, 0xF7, 2, 0xF8, 3, 0xF0}), list({}),
          list({0xF7, 4, 0xF7})},
         {kOn, {0xF8}, {0xF0, 1, 2, 3, 4, 0xF7}}},
        {"exclusive cancelled", {list({0xF0, 1, 0xF0, 0, 0xF7, 0xF4, 0, 0x90, 60, 100})}, {kOn}},
        {"exclusive ended by what followed",
         {list({0xF0, 1, 0xF5, 0, 0x90, 60, 100})},
         {{0xF0, 1, 0xF7}, kOn}},
        {"exclusive without its start", {list({0xF7, 2, 0xF7, 0, 0x90, 60, 100})}, {kOn}},
        {"exclusive without end", {list({0xF0, 1, 2}), list({0xF7, 3, 0xF7})}, {}},
        {"exclusive begun twice",
         {list({0xF0, 1, 0xF0}), list({0xF0, 2, 0xF7})},
         {{0xF0, 2, 0xF7}}},
        {"undefined ones", {list({0xF4, 1, 2, 0xF7, 0, 0xF5, 0xF7, 0, 0x90, 60, 100})}, {kOn}},
    };
    for (const auto& [what, packets, heard] : table) {
        SCOPED_TRACE(what);
        EXPECT_EQ(heardFrom(packets), heard);
    }
}

TEST(RtpMidiPacket, boundsAnExclusiveMessage) {
    const auto sent = [](std::size_t bytes) {
        std::vector<Bytes> packets = {list({0xF0, 0xF0})};
        for (std::size_t left = bytes - 2; left > 0;) {
            Bytes segment(std::min<std::size_t>(left, 4000) + 2, 1);
            left -= segment.size() - 2;
            segment.front() = 0xF7;
            segment.back() = left > 0 ? 0xF0 : 0xF7;
            segment.insert(segment.begin(), {std::uint8_t(0x80 | segment.size() >> 8),
                                             std::uint8_t(segment.size())});
            packets.push_back(packet(segment));
        }
        packets.push_back(list(kOn));
        return heardFrom(packets);
    };
    const Messages longest = sent(ExclusiveJoiner::kLongest);
    ASSERT_EQ(longest.size(), 2u);
    EXPECT_EQ(longest[0].size(), ExclusiveJoiner::kLongest);
    EXPECT_EQ(sent(ExclusiveJoiner::kLongest + 1), Messages{kOn});
}
