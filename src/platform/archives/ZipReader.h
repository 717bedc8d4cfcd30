#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

/// What an archive may cost.
struct ZipLimits {
    std::uint64_t archiveBytes;   // of the file
    std::size_t entries;          // files and folders
    std::uint64_t unpackedBytes;  // of all that is unpacked, together
};

/// Files out of a zip archive that may have been made to do harm. Sizes are counted while
/// unpacking, never believed; nothing is ever written under a name that an archive gives. Entries
/// must be plain files or folders, stored or deflated. [any thread but render; one at a time]
class ZipReader {
  public:
    /// Takes what was unpacked so far; answers whether to go on.
    using Sink = std::function<bool(std::span<const std::uint8_t> part)>;

    /// Only regular files are opened. The whole archive is refused for an entry that is encrypted,
    /// a link, named twice or named to lead out of a folder. On failure `error` is one line that
    /// begins with the path.
    static std::unique_ptr<ZipReader> open(const std::string& path, const ZipLimits& limits,
                                           std::string& error);
    ~ZipReader();
    ZipReader(const ZipReader&) = delete;
    ZipReader& operator=(const ZipReader&) = delete;

    /// Whether there is a file of that name.
    bool has(const std::string& name) const { return indexOf(name).has_value(); }
    /// Unpacks a file of at most `limit` bytes; false as well when `sink` does not go on. What the
    /// sink has taken is whole and matches its checksum only after true. `error` as above.
    bool unpack(const std::string& name, std::uint64_t limit, const Sink& sink, std::string& error);
    std::optional<std::vector<std::uint8_t>> unpack(const std::string& name, std::uint64_t limit,
                                                    std::string& error);

    /// Whether an archive may hold this name: a relative path without "..", backslashes and control
    /// characters, of at most 255 bytes. Folders end in a slash.
    static bool isSafeName(const std::string& name);

  private:
    struct Archive;
    struct Entry {
        std::string name;
        bool stored;  // as plain bytes or deflated
    };

    ZipReader(std::string path, std::uint64_t budget);
    std::string readDirectory(std::size_t limit);
    std::string addEntry(std::uint64_t index);
    std::optional<std::uint64_t> indexOf(const std::string& name) const;

    std::string m_path;
    std::uint64_t m_budget;  // bytes that may still be unpacked
    std::unique_ptr<Archive> m_archive;
    std::vector<Entry> m_entries;  // by index
};
