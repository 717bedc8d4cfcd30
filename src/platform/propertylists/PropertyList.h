#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "propertylists/PropertyListValue.h"

/// Property lists as XML (<plist version="1.0">), the form in which presets and settings are
/// stored. Nothing in a file can make the reader use more than a small multiple of the file's
/// size: both limits hold for reading and for writing, so that what was written can be read.
namespace PropertyList {

inline constexpr std::size_t kMaximumBytes = std::size_t(4) << 20;
/// Dictionaries and arrays within each other; the outermost is the first.
inline constexpr int kMaximumDepth = 16;

/// What becomes of values that are none, such as an integer with letters, and of a second value
/// under one key.
enum class Malformed {
    refused,
    /// The value becomes the text that stands there (an integer that is too large a real), the
    /// second key gets a number behind it. For what must not be lost as a whole.
    asText,
};

/// On failure `error` is one line that begins with "line N: ". A number must be a number from its
/// first character to its last, in C notation whatever the locale; nan and inf are reals.
std::optional<PropertyListValue> parse(std::span<const std::uint8_t> xml, std::string& error,
                                       Malformed malformed = Malformed::refused);

/// UTF-8. Fails for text that XML cannot hold (control characters, broken UTF-8), for a date
/// outside the years 1 to 9999 and beyond the limits.
std::optional<std::string> toXml(const PropertyListValue& value, std::string& error);

/// `error` begins with the path. Only regular files are read.
std::optional<PropertyListValue> readFile(const std::string& path, std::string& error);

/// Replaces the file in one step: at any moment it holds the old list or the new one.
bool writeFile(const std::string& path, const PropertyListValue& value, std::string& error);

}  // namespace PropertyList
