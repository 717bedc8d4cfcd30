#pragma once

#include <cstdint>
#include <optional>
#include <string>

/// [any thread but render]
namespace DiskSpace {

/// Bytes that this account can still write to the file system of a folder; none where the system
/// does not say.
std::optional<std::uint64_t> freeBytes(const std::string& folder);

}  // namespace DiskSpace
