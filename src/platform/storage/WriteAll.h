#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

/// Writes `bytes` bytes at byte `offset` of a regular file, again and again until all are there.
/// Returns those written: fewer mean that errno tells why. [any thread but render]
std::size_t writeAll(int file, const void* data, std::size_t bytes, std::uint64_t offset);

/// Makes the name of a new or renamed file durable: syncs the folder that `path` lies in.
void syncFolderOf(const std::string& path);
