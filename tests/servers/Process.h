#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

/// A program that runs beside the test and ends with this object at the latest.
class Process {
  public:
    /// Finds the program on the path; what it says goes to `log`.
    Process(const std::vector<std::string>& arguments, const std::string& log = "/dev/null");
    ~Process();
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;

    pid_t id() const { return m_pid; }
    void signal(int number);
    /// Whether it has not ended by itself.
    bool running();
    /// Asks it to end (SIGTERM) and waits.
    void terminate();
    /// Ends it at once (SIGKILL).
    void kill();
    /// Waits for its own end: the exit code, or -1 for a signal.
    int wait();

  private:
    pid_t m_pid = -1;
};

/// Runs a program to its end; its exit code.
int runProgram(const std::vector<std::string>& arguments);
