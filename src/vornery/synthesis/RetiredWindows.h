#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>

#include "WaveAccess.h"
#include "runloop/RunLoop.h"

/// Window lists that a unit has replaced, each with the sound that it points into. They are kept
/// for half a second, and for as long as a render may reach them. [main]
class RetiredWindows {
  public:
    /// Tells whether no render can reach any more what a posting has replaced.
    using OutOfReach = std::function<bool(std::int32_t posting)>;

    explicit RetiredWindows(OutOfReach outOfReach) : m_outOfReach(std::move(outOfReach)) {}
    /// Frees what is left at once: the unit goes, so nothing renders it.
    ~RetiredWindows();
    RetiredWindows(const RetiredWindows&) = delete;
    RetiredWindows& operator=(const RetiredWindows&) = delete;

    /// Takes over what `posting` has replaced.
    void retire(WaveWindowList list, std::shared_ptr<WaveSequenceAccess> sound,
                std::int32_t posting);

  private:
    struct Retired {
        std::shared_ptr<WaveSequenceAccess> sound;
        WaveWindowList list;  // goes first
        std::int32_t posting;
        RunLoop::Token token;
    };
    RunLoop::Token reviewLater(std::uint64_t number);
    void review(std::uint64_t number);

    OutOfReach m_outOfReach;
    std::map<std::uint64_t, Retired> m_retired;
    std::uint64_t m_next = 0;
};
