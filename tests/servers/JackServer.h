#pragma once

#include <memory>
#include <string>

#include "Process.h"

/// A JACK server without hardware, under a name of its own that this process and its children use
/// from now on. Nothing runs before `start`.
class JackServer {
  public:
    JackServer();
    ~JackServer();

    /// Returns when it answers. Two loudspeakers, one microphone. `patience` is milliseconds after
    /// which it drops a client that does not answer.
    void start(int rate = 44100, int periodFrames = 512, int patience = 1000);
    Process& process() { return *m_process; }

    /// Records the ports of a client for some seconds: `ports` interleaved channels.
    static std::vector<float> record(const std::vector<std::string>& ports, int seconds);

  private:
    const std::string m_name;
    std::unique_ptr<Process> m_process;
};
