#pragma once

#include <QString>
#include <functional>
#include <vector>

#include "wave/WaveViewport.h"

/// The marks of a time ruler: steps of 1, 2 and 5 in hours, minutes, seconds and their fractions,
/// and below a millisecond in whole frames, which are then told as well. [any thread]
class TimeScale {
  public:
    struct Mark {
        double x;       // points
        QString label;  // empty between two that have one
    };

    /// @param rate  frames per second, above 0
    explicit TimeScale(double rate) : m_rate(rate) {}

    /// Points that a label takes, with some air.
    using Width = std::function<double(const QString& label)>;

    /// From left to right, as close as labels of that width can stand beside each other.
    std::vector<Mark> marks(const WaveViewport& viewport, const Width& widthOf) const;
    /// "1:02.500"; at a step below a millisecond "0:01.00023 · 44110". One step apart, in frames,
    /// labels differ.
    QString label(double frame, double step) const;

    /// Frames from one label to the next, and from one mark to the next.
    struct Steps {
        double label;
        double mark;
    };
    /// For labels that are at least so many frames apart.
    Steps stepsFor(double frames) const;

  private:
    Steps fitting(const WaveViewport& viewport, const Width& widthOf) const;

    double m_rate;
};
