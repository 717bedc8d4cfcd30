#pragma once

#include <cstdint>

/// What happens to a button under a finger. The values are bits, so that several can be wired at
/// once.
enum class ControlEvents : std::uint32_t {
    touchDown = 1,
    touchUpInside = 64,
    touchUpOutside = 128,
    touchCancel = 256,
    touchUp = touchUpInside | touchUpOutside | touchCancel,
};

constexpr bool includes(ControlEvents events, ControlEvents event) {
    return (static_cast<std::uint32_t>(events) & static_cast<std::uint32_t>(event)) != 0;
}
