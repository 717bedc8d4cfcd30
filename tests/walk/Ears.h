#pragma once

#include <memory>
#include <string>
#include <vector>

#include "Process.h"

/// Records what the instrument plays through the JACK server, from beginning to end, into one file.
class Ears {
  public:
    /// Returns when it records silence: `connect` to listen.
    explicit Ears(std::string file);

    /// Listens to a port as soon as it is there; false when it does not come within some seconds.
    bool connect(const std::string& port);

    /// Seconds heard so far: the server's own time, which falls behind on a busy machine.
    double now() const;
    /// Ends the recording; what was heard can be asked from then on.
    void close();
    /// Frames between two moments, mono at 44100 Hz.
    std::vector<float> heard(double from, double to) const;

  private:
    std::string m_file;
    std::unique_ptr<Process> m_process;
    std::vector<float> m_frames;
};
