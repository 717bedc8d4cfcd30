#pragma once

#include <string>

/// Names of files, given and taken in one step. [any thread but render]
namespace FileNames {

enum class Existing { replace, keep };

/// Fails with EEXIST where anything is called `to`, be it since just now.
bool renameWithoutReplacing(const char* from, const char* to);

/// Gives a whole file the name `to` on the same file system, and makes that durable. Answers one
/// line when it failed, else nothing.
[[nodiscard]] std::string rename(const std::string& from, const std::string& to, Existing existing);

}  // namespace FileNames
