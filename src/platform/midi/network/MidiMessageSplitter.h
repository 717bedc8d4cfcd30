#pragma once

#include <algorithm>
#include <cstdint>
#include <span>

#include "midi/MidiMessages.h"

/// The next whole message of a run of them, taken off its front; empty at the end. Bytes that
/// belong to none, and messages that are cut short, are left out.
inline std::span<const std::uint8_t> takeMidiMessage(std::span<const std::uint8_t>& bytes) {
    while (!bytes.empty()) {
        const std::uint8_t status = bytes.front();
        const auto next = std::find_if(bytes.begin() + 1, bytes.end(),
                                       [](std::uint8_t byte) { return byte >= 0x80; });
        const auto part = bytes.first(static_cast<std::size_t>(next - bytes.begin()));
        bytes = bytes.subspan(part.size());
        if (status == 0xF0 && !bytes.empty() && bytes.front() == 0xF7) {
            bytes = bytes.subspan(1);
            return {part.data(), part.size() + 1};
        }
        const std::size_t length = 1 + midiDataBytes(status);
        if (status >= 0x80 && status != 0xF0 && status != 0xF7 && part.size() >= length)
            return part.first(length);
    }
    return {};
}
