#pragma once

#include <memory>

#include "Process.h"
#include "ScratchFolder.h"

/// An X server without a screen, which this process and its children use from now on.
class DisplayServer {
  public:
    /// Returns when it answers. Pixels.
    DisplayServer(int width, int height);

  private:
    ScratchFolder m_folder;
    std::unique_ptr<Process> m_process;
};
