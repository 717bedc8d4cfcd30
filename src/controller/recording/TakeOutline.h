#pragma once

#include <cstdint>
#include <span>
#include <vector>

/// The outline of a take while it grows: the smallest and the largest sample of every thirtieth of
/// a second. Looks at each frame once. [main]
class TakeOutline {
  public:
    static constexpr std::uint32_t kColumnFrames = 1470;  // 1/30 s at 44100 Hz
    struct Column {
        float low = 0;   // -1 to 0; the outline always holds the zero line
        float high = 0;  // 0 to 1
        bool operator==(const Column&) const = default;
    };

    void clear();
    /// `heard`: all frames of the take so far, in 16-bit units, of which those that are new are
    /// read. Answers the largest absolute value among these, 1 is full scale.
    float grow(std::span<const float> heard);

    /// The last one may still grow.
    const std::vector<Column>& columns() const { return m_columns; }

  private:
    void add(float sample);

    std::vector<Column> m_columns;
    std::size_t m_frames = 0;  // that have been read
};
