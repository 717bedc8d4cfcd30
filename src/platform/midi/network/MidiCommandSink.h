#pragma once

#include <cstdint>
#include <span>

/// Hears whole messages, each with its status byte, in the order in which they were played.
class MidiCommandSink {
  public:
    virtual ~MidiCommandSink() = default;
    virtual void command(std::span<const std::uint8_t> message) = 0;
};
