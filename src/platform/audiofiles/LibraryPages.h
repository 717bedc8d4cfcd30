#pragma once

#include <cstdint>
#include <set>

/// Opening the FFmpeg libraries brings in over a hundred others, whose start-up touches some 25 MiB
/// of code and tables that nobody needs again. This gives those pages back: they are clean copies
/// of the files and return by themselves when used.
class LibraryPages {
  public:
    /// Remembers what is loaded now.
    LibraryPages();
    /// Releases the read-only pages of what has been loaded since.
    void releaseNew() const;

  private:
    std::set<std::uintptr_t> m_before;
};
