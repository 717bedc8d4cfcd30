#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

/// MIDI messages as people read them. [any thread but render]
namespace MidiWords {

/// How many bytes the first message of a packet takes, or the data bytes without a status that
/// stand in its place. At least 1, never more than there are; `bytes` is not empty.
std::size_t firstMessage(std::span<const std::uint8_t> bytes);

/// "note on 60 (C4) velocity 100 channel 1". `bytes` is one message with its status, or the
/// beginning of one that is `length` bytes long.
std::string of(std::span<const std::uint8_t> bytes, std::size_t length);

/// "C4" for 60; C-1 is the lowest.
std::string noteName(std::uint8_t note);

}  // namespace MidiWords
