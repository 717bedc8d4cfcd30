#include "midi/MidiPackets.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <random>

#include "log/Log.h"

namespace {

using Bytes = std::vector<std::uint8_t>;

/// Writes down what is played: "down 60 64 up 60", with all bytes that it was given.
class Writer final : public MidiNoteReceiver {
  public:
    void midiNoteDown(std::uint8_t, std::span<const std::uint8_t> data) override {
        write("down", data);
    }
    void midiNoteUp(std::uint8_t, std::span<const std::uint8_t> data) override {
        write("up", data);
    }
    void midiNoteAftertouch(std::uint8_t, std::span<const std::uint8_t> data) override {
        write("touch", data);
    }
    void midiControlChange(std::uint8_t channel, std::uint8_t number, std::uint8_t value) override {
        write("control", Bytes{channel, number, value});
    }
    void midiProgramChange(std::uint8_t channel, std::uint8_t program) override {
        write("program", Bytes{channel, program});
    }
    void midiChannelPressure(std::uint8_t channel, std::uint8_t pressure) override {
        write("pressure", Bytes{channel, pressure});
    }
    void midiPitchBend(std::uint8_t channel, std::uint8_t low, std::uint8_t high) override {
        write("bend", Bytes{channel, low, high});
    }
    std::string take() { return std::exchange(m_written, {}); }

  private:
    void write(const char* what, std::span<const std::uint8_t> data) {
        m_written += what;
        for (std::size_t i = 0;
             i < std::min<std::size_t>(data.size(), *what == 'c' || *what == 'b' ? 3 : 2); ++i)
            m_written.append(" ").append(std::to_string(data[i]));
        m_written += ";";
    }
    std::string m_written;
};

/// In memory that ends with the packet, so that the sanitizer sees a read behind it.
std::string played(const Bytes& packet) {
    Writer writer;
    const Bytes exact(packet.begin(), packet.end());
    MidiPackets(writer).handleMidiPacket(exact);
    return writer.take();
}

/// The same from the rules as they are spoken, one byte at a time.
std::string modelled(const Bytes& packet) {
    std::string written;
    std::size_t skip = 0;
    for (std::size_t i = 0; i < packet.size(); ++i) {
        if (skip > 0) {
            --skip;
            continue;
        }
        const int high = packet[i] / 16, low = packet[i] % 16;
        const auto rest = [&](std::size_t count) {
            std::string text;
            for (std::size_t j = i + 1; j <= i + count && j < packet.size(); ++j)
                text.append(" ").append(std::to_string(packet[j]));
            return text.append(";");
        };
        const bool whole = i + 2 < packet.size();
        if (high == 8 || (high == 9 && whole && packet[i + 2] == 0))
            written += "up" + rest(2);
        else if (high == 9 && whole)
            written += "down" + rest(2);
        else if (high == 10)
            written += "touch" + rest(2);
        const char* const controllers[] = {"control", "program", "pressure", "bend"};
        const std::size_t length = high == 11 || high == 14 ? 2 : 1;
        bool sane = high >= 11 && high <= 14 && i + length < packet.size();
        for (std::size_t j = i + 1; sane && j <= i + length; ++j)
            sane = packet[j] < 128;
        if (sane)
            written.append(controllers[high - 11])
                .append(" ")
                .append(std::to_string(low))
                .append(rest(length));
        if (high >= 8 && high < 15)
            skip = high == 12 || high == 13 ? 1 : 2;
        else if (high == 15)
            skip = low == 2 ? 2 : low == 0 || low == 1 || low == 3 ? 1 : 0;
    }
    return written;
}

}  // namespace

TEST(MidiPackets, hardPackets) {
    const struct {
        Bytes packet;
        const char* expected;
    } cases[] = {
        {{0x90, 0x3C, 0x40, 0x80, 0x3C, 0x00}, "down 60 64;up 60 0;"},
        {{0x9F, 60, 0}, "up 60 0;"},
        {{0x8A, 60, 99}, "up 60 99;"},
        {{0xA0, 60, 5}, "touch 60 5;"},
        {{0x90, 60, 64, 62, 64, 64, 64}, "down 60 64;"},  // no running status
        {{0x3C, 0x40, 0x90, 60, 64}, "down 60 64;"},
        {{0xF0, 0x7E, 60, 64, 0xF7, 0x90, 60, 64}, "down 60 64;"},
        {{0xF0, 1, 2, 3}, ""},       // without an end
        {{0xF0, 0x90, 60, 64}, ""},  // its first byte is data, whatever it is
        {{0xF0}, ""},
        {{0xF1, 0x90, 0x90, 60, 64}, "down 60 64;"},
        {{0xF2, 0x90, 60, 0x90, 60, 64}, "down 60 64;"},
        {{0xF3, 0x90, 0x90, 60, 64}, "down 60 64;"},
        {{0xF8, 0x90, 60, 64, 0xFE, 0x80, 60, 0}, "down 60 64;up 60 0;"},
        {{0x90, 0xF8, 60, 64}, "down 248 60;"},  // a clock inside a message is taken for its data
        {{0x90, 60, 0xF8, 64}, "down 60 248;"},
        {{0xB0, 0x90, 60, 0xC0, 0x90, 0xD0, 0x90, 0xE0, 0x90, 60, 0x90, 1, 2}, "down 1 2;"},
        {{0xB2, 7, 100, 0xC3, 5, 0xD4, 6, 0xEF, 1, 2},
         "control 2 7 100;program 3 5;pressure 4 6;bend 15 1 2;"},
        {{0xB0, 7, 0xF8, 0xE0, 1}, ""},  // damaged, and cut short
        {{0x90, 60, 64, 0x90}, "down 60 64;"},
        {{0x90, 60}, ""},
        {{0x80, 60}, "up 60;"},
        {{}, ""},
    };
    for (const auto& [packet, expected] : cases) {
        EXPECT_EQ(played(packet), expected);
        EXPECT_EQ(modelled(packet), expected);
    }
    Log::clear();
    EXPECT_EQ(played({0xFF, 0x90, 60, 64}), "down 60 64;");
    EXPECT_THAT(Log::lines(), testing::ElementsAre("Full reset"));
}

TEST(MidiPackets, anyBytesAreReadAsTheRulesSay) {
    std::mt19937 random(3);
    for (int round = 0; round < 20000; ++round) {
        Bytes packet(random() % 40);
        for (std::uint8_t& byte : packet)
            byte = std::uint8_t(random() % 3 ? random() % 256 : 0x80 + random() % 0x30);
        ASSERT_EQ(played(packet), modelled(packet)) << "round " << round;
    }
    Bytes longest(65535, 0x90);
    EXPECT_EQ(played(longest), modelled(longest));
}
