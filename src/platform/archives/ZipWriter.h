#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <span>
#include <string>

class AsideFile;

/// A zip archive in the making. After a failure `error` is one line and nothing more is done. [any
/// thread but render; one at a time]
class ZipWriter {
  public:
    ZipWriter();
    ~ZipWriter();
    ZipWriter(const ZipWriter&) = delete;
    ZipWriter& operator=(const ZipWriter&) = delete;

    bool add(const std::string& name, std::string bytes);
    /// A regular file of at most `limit` bytes, as it is.
    bool addFile(const std::string& name, const std::string& path, std::uint64_t limit);
    /// Packs all of it, in memory, and writes it. The writer is used up.
    bool finish(AsideFile& into);
    const std::string& error() const { return m_error; }

  private:
    struct Archive;

    bool fail(const std::string& why);
    bool copy(AsideFile& into);

    std::unique_ptr<Archive> m_archive;
    std::deque<std::string> m_contents;  // read when the archive is packed
    std::string m_error;
};
