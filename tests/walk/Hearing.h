#pragma once

#include <array>
#include <span>
#include <string>
#include <vector>

/// What a phrase sounds like: its level, and that of each of a few bands of frequencies, in each of
/// its stretches, in decibels of full scale.
class Heard {
  public:
    /// `mono` at 44100 Hz. Begins at the first sound, so that a late start makes no difference.
    explicit Heard(std::span<const float> mono);

    /// Mean difference in decibels between two phrases, of bands that sound in either or of levels,
    /// whichever is greater. The quieter one counts as no quieter than the floor.
    double differenceTo(const Heard& other) const;
    /// Loudest stretch, in decibels.
    double level() const { return m_level; }
    bool silent() const { return m_level < kFloor; }

  private:
    static constexpr double kFloor = -60;
    static constexpr std::size_t kBands = 20;
    static constexpr double kSilence = -200;

    struct Stretch {
        Stretch() { bands.fill(kSilence); }
        std::array<double, kBands> bands;
        double level = kSilence;
    };
    /// Of what sounds in either of two.
    struct Mean {
        double sum = 0;
        int count = 0;
        void add(double ours, double theirs);
        double difference() const { return count ? sum / count : 0; }
    };

    static Stretch measure(std::span<const float> frames);
    Stretch stretch(std::size_t index) const;

    std::vector<Stretch> m_stretches;
    double m_level = kSilence;
};
