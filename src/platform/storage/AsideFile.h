#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "storage/WriteAll.h"

/// A file in the making, beside the place that it is for and under a hidden name. Put there it is
/// whole and on disk; otherwise it goes with this object. After a failure `error` is one line that
/// names the place. [any thread but render]
class AsideFile {
  public:
    enum class Put { done, taken, failed };

    /// `target` may be a link: then the place is that of the file behind it.
    explicit AsideFile(const std::string& target);
    ~AsideFile();
    AsideFile(const AsideFile&) = delete;
    AsideFile& operator=(const AsideFile&) = delete;

    /// Behind what was written before.
    bool write(std::span<const std::uint8_t> bytes);
    /// Over what was written before, from byte `at` on.
    bool overwrite(std::uint64_t at, std::span<const std::uint8_t> bytes);
    /// Writes are on disk and the file is closed, under `path`. Putting it somewhere does this too.
    bool sync();
    /// Replaces the file at the target, in one step, and keeps its permissions. Fails for what is
    /// no regular file, such as a device.
    bool replaceTarget();
    /// Takes the name `path`, on the same file system, unless there is anything of that name, be it
    /// since just now.
    Put putNew(const std::string& path);

    const std::string& target() const { return m_target; }
    const std::string& path() const { return m_path; }
    const std::string& error() const { return m_error; }

  private:
    bool fail();
    bool close();
    void settled();

    std::string m_target;
    std::string m_path;
    std::string m_error;
    int m_file = -1;
    std::uint64_t m_written = 0;
};
