#pragma once

#include <algorithm>
#include <cstdint>

/// A stretch of a sound: frames [from, to), `from` never behind `to`.
struct EditSpan {
    std::uint32_t from = 0;
    std::uint32_t to = 0;

    /// What lies between two frames, whichever comes first, of a sound of `length` frames.
    static EditSpan between(std::uint32_t a, std::uint32_t b, std::uint32_t length) {
        return {std::min({a, b, length}), std::min(std::max(a, b), length)};
    }
    static EditSpan whole(std::uint32_t length) { return {0, length}; }

    std::uint32_t frames() const { return to - from; }
    bool empty() const { return from == to; }
    bool operator==(const EditSpan&) const = default;
};
