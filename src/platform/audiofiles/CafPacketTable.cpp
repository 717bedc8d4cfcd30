#include "audiofiles/CafPacketTable.h"

#include "audiofiles/ChunkHeader.h"

std::optional<CafPacketTable> readCafPacketTable(int descriptor) {
    if (!ChunkHeader(descriptor, 0).is("caff"))
        return std::nullopt;
    std::uint64_t at = 8;
    for (int i = 0; i < kMostChunks; ++i) {
        const ChunkHeader chunk(descriptor, at);
        const std::uint64_t size = chunk.number(4, 8, true);
        if (chunk.is("pakt")) {
            const ChunkHeader table(descriptor, at + 12);
            const CafPacketTable found{table.number(8, 8, true), table.number(16, 4, true)};
            const bool sane = found.validFrames > 0 && found.validFrames >> 48 == 0;
            return sane ? std::optional(found) : std::nullopt;
        }
        if (!chunk.whole() || size >> 48 != 0)
            break;
        at += 12 + size;
    }
    return std::nullopt;
}
