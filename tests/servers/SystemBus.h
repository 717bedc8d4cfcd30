#pragma once

#include <memory>
#include <string>

#include "Process.h"
#include "ScratchFolder.h"

/// A system bus of our own, on which everybody may do everything. It is the only one that this
/// process and its children know from now on, whether it has been started or not.
class SystemBus {
  public:
    /// The path of its socket, which goes with it.
    explicit SystemBus(std::string path);
    ~SystemBus();
    /// Returns when it answers.
    void start();

  private:
    const std::string m_path;
    ScratchFolder m_folder;
    std::unique_ptr<Process> m_daemon;
};
