#include "midi/MidiWords.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

namespace {

using Bytes = std::vector<std::uint8_t>;

/// Every message of a packet, in words.
std::vector<std::string> words(std::span<const std::uint8_t> packet) {
    std::vector<std::string> said;
    while (!packet.empty()) {
        const std::size_t length = MidiWords::firstMessage(packet);
        said.push_back(MidiWords::of(packet.first(length), length));
        packet = packet.subspan(length);
    }
    return said;
}

}  // namespace

TEST(MidiWords, sayWhatIsInAPacket) {
    const std::vector<std::pair<Bytes, std::vector<std::string>>> cases{
        {{0x90, 60, 100, 0x8F, 127, 0},
         {"note on 60 (C4) velocity 100 channel 1", "note off 127 (G9) velocity 0 channel 16"}},
        {{0xA1, 0, 55}, {"pressure 55 on key 0 (C-1) channel 2"}},
        {{0xB0, 64, 127, 0xB0, 74, 3},
         {"controller 64 (sustain pedal) value 127 channel 1", "controller 74 value 3 channel 1"}},
        {{0xC0, 5, 0xD0, 6, 0xF8}, {"program 5 channel 1", "pressure 6 channel 1", "clock"}},
        {{0xE0, 0, 0x40, 0xE0, 0x7F, 0x7F, 0xE0, 0, 0},
         {"pitch bend 0 channel 1", "pitch bend 8191 channel 1", "pitch bend -8192 channel 1"}},
        {{0xF0, 0x7E, 1, 0xF7, 0xFE}, {"system exclusive, 4 bytes: f0 7e 01 f7", "active sensing"}},
        {{0xF0, 1, 0x90, 61, 1},
         {"system exclusive, 2 bytes: f0 01", "note on 61 (C#4) velocity 1 channel 1"}},
        {{0xF2, 1, 2, 0xF4}, {"song position 257", "system message f4"}},
        {{1, 2, 0x90, 60}, {"without a status: 01 02", "cut short: 90 3c"}},
    };
    for (const auto& [packet, said] : cases)
        EXPECT_EQ(words(packet), said);
    const Bytes beginning{0xF0, 1};
    EXPECT_EQ(MidiWords::of(beginning, 300), "system exclusive, 300 bytes: f0 01 ...");
}

TEST(MidiWords, readAnyBytesAndNothingBehindThem) {
    std::mt19937 random(7);
    for (int round = 0; round < 20000; ++round) {
        Bytes packet(1 + random() % 12);  // of its own, so that the sanitizer sees a read behind it
        for (std::uint8_t& byte : packet)
            byte = std::uint8_t(random() % 3 ? random() % 256 : 0xF0 + random() % 16);
        std::size_t length = 0;
        for (std::span<const std::uint8_t> left = packet; !left.empty();) {
            const std::size_t first = MidiWords::firstMessage(left);
            ASSERT_GE(first, 1u);
            ASSERT_LE(first, left.size());
            EXPECT_FALSE(MidiWords::of(left.first(first), first).empty());
            left = left.subspan(first);
            length += first;
        }
        ASSERT_EQ(length, packet.size());
    }
}
