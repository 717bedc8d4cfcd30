#pragma once

#include <array>
#include <span>
#include <string>
#include <vector>

/// What a phrase sounds like: the level of each of a few bands of frequencies in each of its
/// stretches, in decibels of full scale.
class Heard {
  public:
    /// `mono` at 44100 Hz. Begins at the first sound, so that a late start makes no difference.
    explicit Heard(std::span<const float> mono);

    /// Mean difference in decibels between two phrases, of bands that sound in either. The quieter
    /// one counts as no quieter than the floor.
    double differenceTo(const Heard& other) const;
    /// Loudest stretch, in decibels.
    double level() const { return m_level; }
    bool silent() const { return m_level < kFloor; }

  private:
    static constexpr double kFloor = -60;
    static constexpr std::size_t kBands = 20;
    using Stretch = std::array<double, kBands>;

    static Stretch measure(std::span<const float> frames);

    std::vector<Stretch> m_stretches;
    double m_level = -200;
};
