#pragma once

#include <atomic>
#include <cstdint>

#include "handoff/AtomicTransfer.h"
#include "handoff/Shared.h"

/// How the main thread knows that no render can reach any more what a posting of an AtomicTransfer
/// has replaced, whether renders go on or have ended: either the posting was taken, or no render is
/// under way and the next one is told to forget what it holds.
class RenderReach {
  public:
    /// Stands around a render, from before it takes a posting to its end. [render]
    class Render {
      public:
        /// `taken`: the transfer's read count.
        Render(RenderReach& reach, std::int32_t taken) noexcept : m_reach(reach) {
            m_reach.m_ends.fetch_add(1, std::memory_order_acq_rel);
            m_mayKeep = !postedBefore(taken, m_reach.m_withdrawn);
        }
        ~Render() { m_reach.m_ends.fetch_add(1, std::memory_order_release); }
        Render(const Render&) = delete;
        Render& operator=(const Render&) = delete;

        /// False when what was taken last may be gone: it must not be looked at.
        bool mayKeep() const noexcept { return m_mayKeep; }

      private:
        RenderReach& m_reach;
        bool m_mayKeep;
    };

    /// [main, the transfer's writer] Withdraws all that was posted before `posting`. True when no
    /// render will look at it again; else ask later.
    template <typename T>
    bool withdraw(const AtomicTransfer<T>& transfer, std::int32_t posting) noexcept {
        if (postedBefore(m_withdrawn, posting))
            m_withdrawn = posting;
        // Changes nothing, but is ordered with the renders' own changes: a render that this does
        // not see under way sees the withdrawal.
        const bool rendering = (m_ends.fetch_add(0, std::memory_order_acq_rel) & 1) != 0;
        return !rendering || !postedBefore(transfer.readCount(), posting);
    }

  private:
    std::atomic<std::uint32_t> m_ends{0};  // of renders, both ends; odd while one is under way
    Shared<std::int32_t> m_withdrawn = 0;  // a posting
};
