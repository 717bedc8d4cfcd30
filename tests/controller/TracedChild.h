#pragma once

#include <sys/types.h>

#include <functional>

/// A process that does some work and whose every system call is seen, so that it can be killed or a
/// call be made to fail at each of them in turn. Linux on amd64 and arm64.
class TracedChild {
  public:
    static bool isPermitted();

    struct Outcome {
        bool reached = false;  // the call that was asked for
        int exitCode = -1;     // of the work, unless it was killed
    };

    /// Runs `work` in a child; its answer is the exit code.
    explicit TracedChild(std::function<int()> work) : m_work(std::move(work)) {}

    /// Kills it as it enters its `index`-th call, which is not made.
    Outcome killAt(int index);
    /// Makes its `index`-th call that changes files or locks fail with `failure`.
    Outcome failAt(int index, int failure);

  private:
    pid_t start();
    template <typename AtEntry>
    int run(AtEntry atEntry);

    std::function<int()> m_work;
};
