#pragma once

#include <string>
#include <string_view>

/// What presets and their waves may be called, and the key of a name in the store. Names are UTF-8.
namespace PresetNames {

/// Far beyond what a screen shows; keeps messages and files small.
inline constexpr std::size_t kLongest = 1000;  // bytes
/// What file systems take.
inline constexpr std::size_t kLongestWave = 255;  // bytes

/// Trimmed of white space and line ends.
std::string trimmed(std::string_view name);
/// Trimmed and lower-cased: presets whose names differ in nothing else are one.
std::string keyOf(std::string_view name);

/// Why a preset cannot have this name, trimmed or not; empty when it can.
std::string fault(std::string_view name);
/// A name nearest to `name` that a preset can have; empty when nothing is left of it.
std::string repaired(std::string_view name);

/// A wave name's beginning for what belongs to a preset of this name, short enough for an ending.
std::string fileNameFor(std::string_view name);

/// Why no sound may have this file name; empty when it may. With separators or ".." it would lead
/// out of the folders that hold sounds.
std::string fileFault(std::string_view file);
/// Why no preset may name this wave: a file name, alone or behind "user/", "internal/" or
/// "generated/".
std::string waveFault(std::string_view wave);

}  // namespace PresetNames
