#pragma once

#include <cstdint>

/// A four-character code as one number, first character highest: fourCC("lpcm") is 0x6c70636d.
constexpr std::uint32_t fourCC(const char (&text)[5]) {
    std::uint32_t code = 0;
    for (int i = 0; i < 4; ++i)
        code = code << 8 | static_cast<unsigned char>(text[i]);
    return code;
}
