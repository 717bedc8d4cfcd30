#include "audiofiles/PcmClaim.h"

#include "audiofiles/ChunkHeader.h"

namespace {

constexpr std::uint32_t kLeftOpen = 0xffffffff;

PcmClaim claimOfRiff(int file, const ChunkHeader& head) {
    const bool bigEndian = head.is("RIFX");
    const bool openEnd = head.number(4, 4, bigEndian) == kLeftOpen;
    std::optional<std::uint64_t> longSize;
    std::uint64_t at = 12;
    for (int i = 0; i < kMostChunks; ++i) {
        const ChunkHeader chunk(file, at);
        if (!chunk.whole())
            break;
        const std::uint64_t size = chunk.number(4, 4, bigEndian);
        if (chunk.is("ds64"))
            longSize = chunk.number(16, 8, false);
        if (chunk.is("data") && size == kLeftOpen && (longSize || openEnd))
            return {longSize, {}};
        if (chunk.is("data"))
            return {size, {}};
        at += 8 + size + size % 2;
    }
    return {};
}

PcmClaim claimOfAiff(int file) {
    PcmClaim claim;
    std::uint64_t at = 12;
    for (int i = 0; i < kMostChunks; ++i) {
        const ChunkHeader chunk(file, at);
        if (!chunk.whole())
            break;
        const std::uint64_t size = chunk.number(4, 4, true);
        if (chunk.is("COMM"))
            claim.frames = chunk.number(10, 4, true);
        if (chunk.is("SSND"))
            claim.bytes = size < 8 ? 0 : size - 8;
        at += 8 + size + size % 2;
    }
    return claim;
}

PcmClaim claimOfCaf(int file) {
    std::uint64_t at = 8;
    for (int i = 0; i < kMostChunks; ++i) {
        const ChunkHeader chunk(file, at);
        const std::uint64_t size = chunk.number(4, 8, true);
        if (chunk.is("data") && size >> 63 == 0)
            return {size < 4 ? 0 : size - 4, {}};
        if (!chunk.whole() || chunk.is("data") || size >> 48 != 0)
            break;
        at += 12 + size;
    }
    return {};
}

}  // namespace

PcmClaim readPcmClaim(int descriptor) {
    const ChunkHeader head(descriptor, 0);
    if (head.is("RIFF") || head.is("RIFX") || head.is("RF64"))
        return claimOfRiff(descriptor, head);
    if (head.is("FORM"))
        return claimOfAiff(descriptor);
    if (head.is("caff"))
        return claimOfCaf(descriptor);
    return {};
}
