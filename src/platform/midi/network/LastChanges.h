#pragma once

#include <array>
#include <cstdint>
#include <span>

/// In which packet each note and controller was last set, so that a message of a late packet
/// counts only where nothing newer has been heard.
class LastChanges {
  public:
    void note(std::span<const std::uint8_t> message, std::uint32_t packet) {
        if (std::uint32_t* const last = place(message))
            *last = packet;
    }
    /// Whether it is a note or a controller that nothing newer has set.
    bool isNews(std::span<const std::uint8_t> message, std::uint32_t packet) {
        const std::uint32_t* const last = place(message);
        return last && static_cast<std::int32_t>(packet - *last) >= 0;
    }

  private:
    using Table = std::array<std::array<std::uint32_t, 128>, 16>;

    std::uint32_t* place(std::span<const std::uint8_t> message) {
        const int kind = message[0] >> 4;
        if (kind != 8 && kind != 9 && kind != 11)
            return nullptr;
        return &(kind == 11 ? m_controllers : m_notes)[message[0] & 0x0F][message[1]];
    }

    Table m_notes{};
    Table m_controllers{};
};
