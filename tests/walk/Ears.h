#pragma once

#include <memory>
#include <string>
#include <vector>

#include "Process.h"

/// Records what the instrument plays through the JACK server, from beginning to end, into one file.
class Ears {
  public:
    /// Returns when it listens. `port` is what the instrument plays to.
    Ears(std::string file, const std::string& port);

    /// Seconds since it began to listen.
    double now() const;
    /// Ends the recording; what was heard can be asked from then on.
    void close();
    /// Frames between two moments, mono at 44100 Hz.
    std::vector<float> heard(double from, double to) const;

  private:
    std::string m_file;
    std::unique_ptr<Process> m_process;
    double m_began;
    std::vector<float> m_frames;
};
