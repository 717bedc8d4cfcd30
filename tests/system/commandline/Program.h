#pragma once

#include <sys/types.h>

#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

/// What a run of a program left behind.
struct Outcome {
    int exitCode = -1;  // -1 when a signal ended it
    int signal = 0;     // SIGALRM when it hung
    std::string out;
    std::string err;
};

/// The real `ombrix`, run as a user would: a process of its own with surroundings that the test
/// chooses. It is ended after a minute, so that a hang fails one test only.
class Program {
  public:
    using Words = std::vector<std::string>;

    struct Surroundings {
        std::filesystem::path folder;                    // to run in
        std::map<std::string, std::string> environment;  // all of it, but for sanitizers' options
        std::optional<std::uint64_t> largestFile;        // bytes; writing more fails
    };

    Program(const Words& arguments, const Surroundings& surroundings);
    ~Program();
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    void signal(int number) const;
    bool running();
    /// Returns when it has ended.
    const Outcome& wait();

  private:
    void collect(int status);

    pid_t m_process = -1;
    int m_out = -1;
    int m_err = -1;
    std::optional<Outcome> m_outcome;
};
