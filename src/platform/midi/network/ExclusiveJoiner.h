#pragma once

#include <cstdint>
#include <span>
#include <vector>

/// Joins the segments of a system exclusive message, which may come in several packets. Memory is
/// bounded: a longer message is dropped whole.
class ExclusiveJoiner {
  public:
    /// With its first and last byte.
    static constexpr std::size_t kLongest = 8192;

    bool isOpen() const { return m_open; }
    /// Forgets what was not finished.
    void begin() {
        m_bytes.assign(1, 0xF0);
        m_open = true;
    }
    void add(std::uint8_t byte) {
        if (!m_open)
            return;
        if (m_bytes.size() + 1 < kLongest)
            m_bytes.push_back(byte);
        else
            m_open = false;
    }
    void cancel() { m_open = false; }
    /// The whole message until the next call, or nothing if its start is missing.
    std::span<const std::uint8_t> finished() {
        if (!m_open)
            return {};
        m_open = false;
        m_bytes.push_back(0xF7);
        return m_bytes;
    }

  private:
    std::vector<std::uint8_t> m_bytes;
    bool m_open = false;
};
