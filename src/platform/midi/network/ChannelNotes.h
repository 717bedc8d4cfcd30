#pragma once

#include <array>
#include <bit>
#include <bitset>
#include <cstddef>
#include <cstdint>

/// One bit for every note of a channel.
using NoteBits = std::bitset<128>;
/// One bit for every note of every channel.
using ChannelNotes = std::array<NoteBits, 16>;

/// Calls `what` with the number of each note that is set, upwards.
template <typename What>
void forEachNote(const NoteBits& notes, What what) {
    constexpr NoteBits kLowWord{~std::uint64_t{0}};
    for (std::size_t base = 0; base < 128; base += 64) {
        std::uint64_t word = (notes >> base & kLowWord).to_ullong();
        for (; word != 0; word &= word - 1)
            what(base + static_cast<std::size_t>(std::countr_zero(word)));
    }
}
