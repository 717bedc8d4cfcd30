#pragma once

#include <cstdint>
#include <optional>

/// Which of the frames that a compressed CAF file decodes to are its sound.
struct CafPacketTable {
    std::uint64_t validFrames;    // the sound
    std::uint64_t primingFrames;  // before it, of the encoder's making
};

/// None when the file is no CAF file or does not say.
std::optional<CafPacketTable> readCafPacketTable(int descriptor);
