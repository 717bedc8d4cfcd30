#pragma once

#include <string>

#include "startup/InstanceLock.h"

/// The file that is there while the program runs in front: found at start-up it tells that the
/// previous run did not leave cleanly. It belongs to the first instance on a data folder; others
/// neither read nor touch it. [main]
class RunningMarker {
  public:
    RunningMarker(const std::string& folder, const InstanceLock& place);

    /// Only before this process marks itself running.
    bool previousRunCrashed() const;
    /// Writes the marker, whose one key "last-opened-at" holds the present date, or removes it.
    /// What fails is logged.
    void markRunning(bool running);

  private:
    bool isOurs() const { return m_place.ordinal() == 1; }

    std::string m_path;
    const InstanceLock& m_place;
};
