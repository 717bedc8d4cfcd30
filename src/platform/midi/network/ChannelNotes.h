#pragma once

#include <array>
#include <bitset>
#include <cstddef>

/// One bit for every note of every channel.
using ChannelNotes = std::array<std::bitset<128>, 16>;
