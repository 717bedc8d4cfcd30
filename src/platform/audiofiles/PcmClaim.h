#pragma once

#include <cstdint>
#include <optional>

/// What the header of a RIFF, AIFF or CAF file says about its sound, be it true or not.
struct PcmClaim {
    std::optional<std::uint64_t> bytes;   // of the data chunk; none: left open by a stream writer
    std::optional<std::uint64_t> frames;  // AIFF alone counts frames
};

/// Walks the chunks of an open file. Empty where there is nothing to find.
PcmClaim readPcmClaim(int descriptor);
