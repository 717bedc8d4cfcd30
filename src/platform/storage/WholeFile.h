#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

/// Why a file was not read.
enum class ReadFault {
    none,
    missing,      // there is no such file
    unavailable,  // no permission, an I/O error, not a regular file: what it holds is not known
    tooLarge,
};

/// The bytes of a regular file that must not hold more than `limit` bytes. Anything else (a folder,
/// a pipe, a device) is refused without being waited for. On failure `error` is one line that
/// names file and reason, and `fault`, if given, tells the kind. [any thread but render]
std::optional<std::vector<std::uint8_t>> readWholeFile(const std::string& path, std::size_t limit,
                                                       std::string& error,
                                                       ReadFault* fault = nullptr);

/// Replaces the file by `bytes` so that a reader, or a power cut, finds either the old file or the
/// new one: written aside, synced, renamed, folder synced. On failure the old file stays, nothing
/// is left behind, and `error` is one line. A link is followed; a pipe or a device is refused. [any
/// thread but render]
bool writeWholeFile(const std::string& path, std::span<const std::uint8_t> bytes,
                    std::string& error);
