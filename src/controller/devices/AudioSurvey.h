#pragma once

#include <future>
#include <optional>
#include <vector>

#include "audiounits/devices/AudioDevice.h"

/// What could be played through and heard from, looked up aside: asking servers may take a second
/// and more. [main]
class AudioSurvey {
  public:
    struct Found {
        std::vector<AudioDeviceInfo> devices;
        std::vector<AudioDeviceInfo> inputs;
    };

    /// Begins to look, unless it does.
    void begin();
    bool underWay() const { return m_answer.valid(); }
    /// What was found, once.
    std::optional<Found> take();

  private:
    std::future<Found> m_answer;
};
