#include "midi/MidiFile.h"

#include "midi/MidiBytes.h"
#include "midi/MidiTrackParser.h"
#include "storage/WholeFile.h"

namespace {

constexpr std::uint32_t kHeaderChunk = 0x4D546864;  // "MThd"
constexpr std::uint32_t kTrackChunk = 0x4D54726B;   // "MTrk"

MidiDivision timeCodeDivision(std::uint32_t division, std::uint64_t offset) {
    const std::uint32_t ticks = division & 0xFF;
    switch (0x100 - (division >> 8)) {
        case 24:
            return {true, ticks, 24, 1};
        case 25:
            return {true, ticks, 25, 1};
        case 29:
            return {true, ticks, 30000, 1001};
        case 30:
            return {true, ticks, 30, 1};
        default:
            MidiBytes::refuse(offset, "a division with an unknown frame rate");
    }
}

MidiDivision readDivision(MidiBytes& header) {
    const std::uint64_t offset = header.offset();
    const std::uint32_t division = header.number(2);
    const MidiDivision read =
        division < 0x8000 ? MidiDivision{false, division} : timeCodeDivision(division, offset);
    if (read.ticks == 0)
        MidiBytes::refuse(offset, "a division of 0");
    return read;
}

/// The type and the content of the next chunk.
struct Chunk {
    std::uint32_t type;
    MidiBytes content;
};

Chunk nextChunk(MidiBytes& file) {
    const std::uint32_t type = file.number(4);
    const std::uint64_t lengthOffset = file.offset();
    const std::uint32_t length = file.number(4);
    return {type, file.take(length, lengthOffset, type == kTrackChunk ? "track" : "chunk")};
}

/// The header's content is longer in files of later versions: what follows is skipped.
std::uint32_t readHeader(MidiBytes& file, MidiFile& result) {
    if (file.left() < 4 || MidiBytes(file).number(4) != kHeaderChunk)
        MidiBytes::refuse(0, "no MIDI file (it does not begin with MThd)");
    MidiBytes header = nextChunk(file).content;
    if (header.left() < 6)
        MidiBytes::refuse(4, "a header of less than six bytes");
    result.format = static_cast<int>(header.number(2));
    if (result.format > 2)
        MidiBytes::refuse(8, "unknown format " + std::to_string(result.format));
    const std::uint32_t tracks = header.number(2);
    result.division = readDivision(header);
    return tracks;
}

MidiFile parseFile(MidiBytes file) {
    MidiFile result;
    const std::uint32_t declared = readHeader(file, result);
    while (result.tracks.size() < declared) {
        if (file.atEnd())
            MidiBytes::refuse(file.offset(), std::to_string(declared) + " tracks declared but " +
                                                 std::to_string(result.tracks.size()) + " there");
        const Chunk chunk = nextChunk(file);
        if (chunk.type == kTrackChunk)
            result.tracks.push_back(MidiTrackParser(chunk.content).parse());
    }
    return result;
}

}  // namespace

std::optional<MidiFile> MidiFile::parse(std::span<const std::uint8_t> bytes, MidiFileError& error) {
    try {
        return parseFile(MidiBytes(bytes, 0, "file"));
    } catch (MidiFileError& refused) {
        error = std::move(refused);
        return std::nullopt;
    }
}

std::optional<MidiFile> MidiFile::read(const std::string& path, std::string& error) {
    const auto bytes = readWholeFile(path, kMaximumBytes, error);
    if (!bytes)
        return std::nullopt;
    MidiFileError refused;
    auto file = parse(*bytes, refused);
    if (!file)
        error = path + ": broken at byte " + std::to_string(refused.offset) + ": " + refused.reason;
    return file;
}
