#pragma once

#include <vector>

#include "Sound.h"

/// A wave that runs to and fro in a string or a pipe, and loses a little on each way: a delay of
/// one period, a two-point average that takes the highs first, and an all-pass that makes up for
/// the fraction of a frame, so that the pitch is exact. Kevin Karplus and Alex Strong, "Digital
/// synthesis of plucked-string and drum timbres", 1983; David A. Jaffe and Julius O. Smith,
/// "Extensions of the Karplus-Strong plucked-string algorithm", 1983.
class TunedLoop {
  public:
    /// @param hertz        of the fundamental
    /// @param dullness     0 to 0.5: how much the average takes from the highs
    /// @param fadeSeconds  until the fundamental is 60 dB down; not longer than the average allows
    TunedLoop(double hertz, double dullness, double fadeSeconds);

    /// What is in the loop after `x` was added.
    double process(double x);

  private:
    std::vector<double> m_delay;
    std::size_t m_position = 0;
    double m_dullness, m_gain, m_allPass;
    double m_lastOut = 0, m_allPassIn = 0, m_allPassOut = 0;
};
