#pragma once

#include "Options.h"
#include "recording/Performance.h"
#include "startup/Instrument.h"

inline constexpr OptionRow kRecordOption{"record", nullptr,
                                         "record it into the data folder, from the first note on"};

/// `--record`: what the instrument plays goes into a file in the data folder too, from the
/// first note to the end of the command. [main]
class RecordedPlay : private PerformanceDelegate {
  public:
    explicit RecordedPlay(Instrument& instrument);

    /// Call in the loop: whoever plays may pause for longer than people do.
    void goOn() { m_performance.restartTimeout(); }
    /// Completes the file. False when the recording failed, of which the user knows then.
    bool finish();

  private:
    void performanceComplete(const std::string& path) override;
    void performanceProblem(const std::string& line) override;

    Performance m_performance;
    bool m_failed = false;
};
