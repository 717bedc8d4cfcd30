#pragma once

#include <string>

/// Ways to keep what a file holds under a second name before it is replaced. The file itself stays
/// where it is. On failure `error` is one line. [any thread but render]
namespace KeptFile {

/// `copy` becomes what `path` is now; at any moment it holds its old content or the new one.
/// Fails for files of more than `limit` bytes where the file system has no second names.
bool keepAs(const std::string& path, const std::string& copy, std::size_t limit,
            std::string& error);

/// Keeps `path` under a name that nothing has yet: `base`, else "`base` 2" and so on. Answers that
/// name, empty on failure. Where the file system has no second names the file is moved there.
std::string keepAside(const std::string& path, const std::string& base, std::string& error);

}  // namespace KeptFile
