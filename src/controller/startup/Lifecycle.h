#pragma once

#include "parameters/Settings.h"
#include "startup/RunningMarker.h"

/// What happens when the program comes to the front, leaves it and ends. [main]
class Lifecycle {
  public:
    Lifecycle(Instrument& instrument, Settings& settings, RunningMarker& marker)
        : m_instrument(instrument), m_settings(settings), m_marker(marker) {}

    /// Whether it was in the background or only inactive makes no difference.
    void willForeground(bool returning);
    /// `leaving` for the background or for good keeps the settings. Becoming inactive keeps
    /// nothing, but a crash while inactive is not reported at the next start either.
    void willBackground(bool leaving);
    void willTerminate();

  private:
    Instrument& m_instrument;
    Settings& m_settings;
    RunningMarker& m_marker;
};
