#pragma once

#include <memory>
#include <string>

#include "storage/FileLock.h"

/// This process's place among those that run on one data folder: the first has ordinal 1, one that
/// starts beside it 2, and so on. A place is a lock file of its own, ".running.lock",
/// ".running 2.lock"; the system takes the lock away from a process that dies. What must be done by
/// one process only (the crash marker, restoring an unsaved take) is tied to it. Who takes the
/// first place also removes what killed processes have left in the folder half written. [main]
class InstanceLock {
  public:
    /// Takes the lowest free place in `folder`. Where nothing can be locked (a read-only folder, a
    /// file system without locks) the ordinal is 0: such a process owns nothing.
    explicit InstanceLock(const std::string& folder);

    int ordinal() const { return m_ordinal; }

    /// Runs `work` with place `ordinal` held for its time if no living process holds it; answers
    /// whether it did. Also true for the place that this process holds.
    template <typename Work>
    bool whileFree(int ordinal, Work work) {
        if (ordinal < 1)
            return false;
        if (ordinal == m_ordinal) {
            work();
            return true;
        }
        const FileLock place(lockFile(m_folder, ordinal));
        if (place.held())
            work();
        return place.held();
    }

  private:
    static std::string lockFile(const std::string& folder, int ordinal);

    std::string m_folder;
    std::unique_ptr<FileLock> m_place;
    int m_ordinal = 0;
};
