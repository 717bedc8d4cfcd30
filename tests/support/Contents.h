#pragma once

#include <filesystem>
#include <string>

/// All bytes of a file; none where there is none.
std::string contentsOf(const std::filesystem::path& path);
