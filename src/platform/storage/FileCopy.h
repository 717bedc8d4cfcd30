#pragma once

#include <stop_token>
#include <string>

/// Copies that are there whole or not at all. [any thread but render]
namespace FileCopy {

/// Copies a regular file into a folder, under its own name, or "NAME 2.EXT" and so on where that is
/// taken; replaces nothing. Answers the path of the copy; empty when it failed, with one line in
/// `error`, or was asked to stop.
std::string into(const std::string& folder, const std::string& path, std::stop_token stop,
                 std::string& error);

}  // namespace FileCopy
