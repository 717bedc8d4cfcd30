#pragma once

#include <optional>

#include "Options.h"
#include "recording/Performance.h"
#include "startup/Instrument.h"

/// Of a command that plays notes through a device until it is ended: those of the device and
/// `--record`, its own, those of the instrument.
std::vector<OptionRow> playingOptions(std::vector<OptionRow> own = {});

/// `--record`: what the instrument plays goes into a file in the data folder too, from the
/// first note to the end of the command. Without it, nothing. [main]
class RecordedPlay : private PerformanceDelegate {
  public:
    RecordedPlay(Instrument& instrument, const Arguments& arguments);

    /// Call in the loop: whoever plays may pause for longer than people do.
    void goOn();
    /// Completes the file. False when the recording failed, of which the user knows then.
    bool finish();

  private:
    void performanceComplete(const std::string& path) override;
    void performanceProblem(const std::string& line) override;

    std::optional<Performance> m_performance;
    bool m_failed = false;
};
