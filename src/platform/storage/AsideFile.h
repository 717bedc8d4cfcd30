#pragma once

#include <string>

/// A file that is written beside its final name and takes that name only when it is whole: a
/// reader, or a power cut, finds the old file, the new one or none. Whoever writes it syncs it.
/// [any thread but render; one at a time]
class AsideFile {
  public:
    enum class Existing { replace, keep };

    /// For a file that is to be called `path`. A link is followed. Creates nothing.
    explicit AsideFile(const std::string& path);
    /// Removes what was not put in place.
    ~AsideFile();
    AsideFile(const AsideFile&) = delete;
    AsideFile& operator=(const AsideFile&) = delete;

    /// Where to write: hidden, in the same folder.
    const std::string& path() const { return m_aside; }

    /// Renames it and syncs the folder. Answers one line when it failed, else nothing.
    [[nodiscard]] std::string putInPlace(Existing existing);

    /// The same for a whole file that lies in the folder of `path` already. A file that may not be
    /// replaced, and came to be at this very instant, is not replaced either.
    [[nodiscard]] static std::string rename(const std::string& from, const std::string& path,
                                            Existing existing);
    /// Creates an empty file at `path` if nothing is there: a name that nobody else gets any more.
    /// False with errno set.
    static bool reserve(const std::string& path);

  private:
    std::string m_target;
    std::string m_aside;  // empty once it is in place
};
