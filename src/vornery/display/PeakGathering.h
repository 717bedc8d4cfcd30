#pragma once

#include <array>
#include <cstdint>

#include "WaveWindow.h"

class BackgroundWorkerCancellableTask;

/// Fills the columns of a tile from a list of windows. [worker] Allocates nothing. What is no
/// number changes no column.
class PeakGathering {
  public:
    static constexpr int kColumns = 1024;
    using Columns = std::array<float, kColumns>;

    /// Both hold what is drawn where nothing is gathered. Stops at the next column once `task` is
    /// cancelled.
    PeakGathering(Columns& peaks, Columns& pokes, const BackgroundWorkerCancellableTask& task)
        : m_peaks(peaks), m_pokes(pokes), m_task(task) {}

    /// `span` frames, 1024 or more, over all columns, of which the first `offset` lie before the
    /// windows, and `count` are in them. At most about five frames a column are looked at.
    void decimate(const WaveWindow* windows, std::int64_t span, std::int64_t offset,
                  std::int64_t count);
    /// `span` frames, fewer than 1024, over all columns, from the windows' first on.
    void interpolate(const WaveWindow* windows, std::int64_t span);

  private:
    void include(int column, float sample);
    void clearFrom(int column);

    Columns& m_peaks;
    Columns& m_pokes;
    const BackgroundWorkerCancellableTask& m_task;
};
