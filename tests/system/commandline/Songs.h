#pragma once

#include <cstdint>
#include <string>

/// Bytes of MIDI files for tests, sound and broken.
namespace songs {

/// The `bytes` lowest bytes of a number, the highest first.
std::string bigEndian(std::uint32_t number, int bytes);
/// A chunk with its length; `claimed` lies about it.
std::string chunk(const std::string& type, const std::string& content);
std::string chunk(const std::string& type, const std::string& content, std::uint32_t claimed);
std::string header(std::uint32_t format, std::uint32_t tracks, std::uint32_t division);
/// End of Track, now.
std::string end();
/// One key held for `ticks` (below 128).
std::string note(int key, int ticks);

/// Three notes, one after the other, 0.3 s in all.
std::string small();

}  // namespace songs
