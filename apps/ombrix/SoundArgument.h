#pragma once

#include <optional>
#include <string>

/// The file of a sound as a user names it: an existing path first, else a built-in sound, else one
/// in the data folder, both with or without ".wav"; none for none of them.
std::optional<std::string> soundPath(const std::string& sound);
/// The line for none.
std::string noSuchSound(const std::string& sound);
