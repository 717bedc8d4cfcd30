#pragma once

#include <memory>
#include <string>
#include <vector>

#include "Process.h"
#include "Recording.h"
#include "ScratchFolder.h"

/// A PulseAudio server with two sinks and no hardware, in a runtime folder of its own that this
/// process and its children use from now on. Nothing runs before `start`.
class PulseServer {
  public:
    PulseServer();
    ~PulseServer();

    /// Returns when it answers. Sinks "out", the default, and "feed"; "mic", the default source,
    /// hears what "feed" plays.
    void start(int rate = 44100);
    Process& process() { return *m_process; }

    /// Records what a sink plays for some seconds, in two channels at 44100 Hz.
    Recording record(const std::string& sink, int seconds);

  private:
    ScratchFolder m_runtime;
    std::unique_ptr<Process> m_process;
    int m_recordings = 0;
};
