#pragma once

#include <vector>

#include "midi/network/MidiCommandSink.h"
#include "midi/network/PeerNotes.h"

using Bytes = std::vector<std::uint8_t>;
using Messages = std::vector<Bytes>;

/// What a receiver has heard, and the notes that it holds.
class HeardMessages final : public MidiCommandSink {
  public:
    void command(std::span<const std::uint8_t> message) override {
        messages.emplace_back(message.begin(), message.end());
        notes.follow(message);
    }
    Messages messages;
    PeerNotes notes;
};
