#pragma once

#include <cstddef>
#include <string>
#include <vector>

/// Proves that renders do nothing forbidden. While one lives, every render of the process is
/// watched, on whatever thread: taking or giving back memory, taking a lock other than a voice's
/// own, waiting, and calling the system are recorded, each with the calls that led there.
///
///     RenderWatch watch;
///     ... render ...
///     EXPECT_GT(watch.renders(), 0u);
///     EXPECT_THAT(watch.violations(), testing::IsEmpty());
///
/// One at a time; made and destroyed while nothing renders. Programs built with a sanitizer, which
/// has hooks of its own in these places, record nothing: see `working`.
class RenderWatch {
  public:
    RenderWatch();
    ~RenderWatch();
    RenderWatch(const RenderWatch&) = delete;
    RenderWatch& operator=(const RenderWatch&) = delete;

    /// What renders have done that they must not, with a backtrace each; the first 32.
    std::vector<std::string> violations() const;
    /// How many renders were watched.
    std::size_t renders() const;

    /// Whether this program can watch at all.
    static bool working();
    /// Whether the kernel stops at every system call of a render (Linux 5.11 on x86-64, later on
    /// other processors). Where it does not, only calls of the best-known functions are seen.
    static bool trapsSystemCalls();
};
