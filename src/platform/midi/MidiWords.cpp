#include "midi/MidiWords.h"

#include <algorithm>
#include <array>
#include <cstdio>

#include "midi/MidiMessages.h"

namespace {

constexpr std::uint8_t kExclusiveStatus = 0xF0;
constexpr std::uint8_t kExclusiveEnd = 0xF7;
constexpr std::uint8_t kFirstRealTime = 0xF8;

struct Named {
    std::uint8_t number;
    const char* name;
};
constexpr std::array kControllerNames{
    Named{1, "modulation wheel"},
    Named{2, "breath"},
    Named{4, "foot"},
    Named{7, "volume"},
    Named{10, "pan"},
    Named{11, "expression"},
    Named{64, "sustain pedal"},
    Named{66, "sostenuto pedal"},
    Named{67, "soft pedal"},
    Named{120, "all sound off"},
    Named{121, "reset"},
    Named{123, "all notes off"},
};
constexpr std::array kSystemNames{
    Named{0xF6, "tune request"}, Named{0xF8, "clock"}, Named{0xFA, "start"},
    Named{0xFB, "continue"},     Named{0xFC, "stop"},  Named{0xFE, "active sensing"},
    Named{0xFF, "reset"},
};

template <std::size_t Count>
const char* nameOf(const std::array<Named, Count>& names, std::uint8_t number) {
    const auto found = std::ranges::find(names, number, &Named::number);
    return found == names.end() ? nullptr : found->name;
}

std::string hexadecimal(std::span<const std::uint8_t> bytes, std::size_t length) {
    std::string text;
    for (const std::uint8_t byte : bytes) {
        std::array<char, 4> digits;
        std::snprintf(digits.data(), digits.size(), " %02x", byte);
        text += digits.data();
    }
    return bytes.size() < length ? text + " ..." : text;
}

std::string keyWords(std::uint8_t note) {
    return std::to_string(note) + " (" + MidiWords::noteName(note) + ")";
}

std::string controllerWords(std::uint8_t number, std::uint8_t value) {
    const char* const name = nameOf(kControllerNames, number);
    return "controller " + std::to_string(number) +
           (name ? std::string(" (") + name + ")" : std::string()) + " value " +
           std::to_string(value);
}

/// The part of a channel message that its kind decides.
std::string ofChannel(std::uint8_t status, std::uint8_t first, std::uint8_t second) {
    switch (status >> 4) {
        case 8:
            return "note off " + keyWords(first) + " velocity " + std::to_string(second);
        case 9:
            return "note on " + keyWords(first) + " velocity " + std::to_string(second);
        case 10:
            return "pressure " + std::to_string(second) + " on key " + keyWords(first);
        case 11:
            return controllerWords(first, second);
        case 12:
            return "program " + std::to_string(first);
        case 13:
            return "pressure " + std::to_string(first);
        default:
            return "pitch bend " + std::to_string((second << 7 | first) - 0x2000);
    }
}

std::string ofSystem(std::uint8_t status, std::uint8_t first, std::uint8_t second) {
    if (status == 0xF1)
        return "time code " + std::to_string(first);
    if (status == 0xF2)
        return "song position " + std::to_string(second << 7 | first);
    if (status == 0xF3)
        return "song " + std::to_string(first);
    const char* const name = nameOf(kSystemNames, status);
    return name ? name : "system message" + hexadecimal({&status, 1}, 1);
}

}  // namespace

std::string MidiWords::noteName(std::uint8_t note) {
    constexpr std::array kNames{"C", "C#", "D", "D#", "E", "F", "F#", "G", "G#", "A", "A#", "B"};
    return kNames[note % 12u] + std::to_string(note / 12 - 1);
}

std::size_t MidiWords::firstMessage(std::span<const std::uint8_t> bytes) {
    const auto isStatus = [](std::uint8_t byte) { return byte >= 0x80; };
    if (isStatus(bytes[0]) && bytes[0] != kExclusiveStatus)
        return std::min(1 + midiDataBytes(bytes[0]), bytes.size());
    const auto endsHere = [&](std::uint8_t byte) {
        return isStatus(byte) && (bytes[0] < 0x80 || byte < kFirstRealTime);
    };
    const auto end = std::ranges::find_if(bytes.subspan(1), endsHere);
    const auto size = static_cast<std::size_t>(end - bytes.begin());
    const bool closed =
        size < bytes.size() && bytes[0] == kExclusiveStatus && *end == kExclusiveEnd;
    return closed ? size + 1 : size;
}

std::string MidiWords::of(std::span<const std::uint8_t> bytes, std::size_t length) {
    const std::uint8_t status = bytes[0];
    if (status < 0x80)
        return "without a status:" + hexadecimal(bytes, length);
    if (status == kExclusiveStatus)
        return "system exclusive, " + std::to_string(length) +
               " bytes:" + hexadecimal(bytes, length);
    if (bytes.size() < 1 + midiDataBytes(status))
        return "cut short:" + hexadecimal(bytes, length);
    const std::uint8_t first = bytes.size() > 1 ? bytes[1] : std::uint8_t{0};
    const std::uint8_t second = bytes.size() > 2 ? bytes[2] : std::uint8_t{0};
    if (status >= kExclusiveStatus)
        return ofSystem(status, first, second);
    return ofChannel(status, first, second) + " channel " + std::to_string(status % 16 + 1);
}
