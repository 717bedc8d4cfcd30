#include "SteadyLine.h"

#include <algorithm>
#include <bit>

bool SteadyLine::holds(const DelayLine::Loop& loop, float& value) const noexcept {
    value = std::bit_cast<float>(m_value);
    return loop.buffer == m_buffer && loop.length == m_length && m_same >= m_length;
}

void SteadyLine::look(const DelayLine::Loop& loop, std::uint32_t frames) noexcept {
    if (frames == 0)
        return;
    const std::uint32_t last = (loop.position + frames - 1) % loop.length;
    const std::uint32_t written = std::min(frames, loop.length);
    const auto value = std::bit_cast<std::uint32_t>(loop.buffer[last]);
    if (loop.buffer != m_buffer || loop.length != m_length || value != m_value)
        m_same = 0;
    std::uint32_t equal = 1;
    for (std::uint32_t slot = last; equal < written; ++equal) {
        slot = slot == 0 ? loop.length - 1 : slot - 1;
        if (std::bit_cast<std::uint32_t>(loop.buffer[slot]) != value)
            break;
    }
    m_same = equal == written ? std::min(m_same + equal, loop.length) : equal;
    m_buffer = loop.buffer;
    m_length = loop.length;
    m_value = value;
}
