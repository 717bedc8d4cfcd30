#pragma once

#include <cstdint>

/// Bytes that can be filled without others having to go: more would be granted, and then end this
/// program or another. The largest number where that is not known. [any thread but render]
std::uint64_t freeMemory();
