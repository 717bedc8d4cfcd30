#pragma once

#include <cstdint>
#include <vector>

/// Builds standard MIDI files byte by byte, broken ones too.
namespace midi {

using Bytes = std::vector<std::uint8_t>;

inline void append(Bytes& to, const Bytes& from) {
    to.insert(to.end(), from.begin(), from.end());
}

inline Bytes number(std::uint32_t value, int bytes) {
    Bytes result;
    for (int i = bytes - 1; i >= 0; --i)
        result.push_back(std::uint8_t(value >> (8 * i)));
    return result;
}

inline Bytes quantity(std::uint32_t value) {
    Bytes result = {std::uint8_t(value & 0x7F)};
    while (value >>= 7)
        result.insert(result.begin(), std::uint8_t(0x80 | (value & 0x7F)));
    return result;
}

inline Bytes chunk(const char (&type)[5], const Bytes& content) {
    Bytes result(type, type + 4);
    append(result, number(std::uint32_t(content.size()), 4));
    append(result, content);
    return result;
}

inline Bytes header(std::uint32_t format, std::uint32_t tracks, std::uint32_t division) {
    Bytes content = number(format, 2);
    append(content, number(tracks, 2));
    append(content, number(division, 2));
    return chunk("MThd", content);
}

inline const Bytes kEndOfTrack = {0, 0xFF, 0x2F, 0};

/// A whole file of one track.
inline Bytes file(const Bytes& events, std::uint32_t division = 96) {
    Bytes result = header(0, 1, division);
    append(result, chunk("MTrk", events));
    return result;
}

}  // namespace midi
