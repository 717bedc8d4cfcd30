#pragma once

#include <optional>
#include <string>
#include <string_view>

/// The number that the whole text is in C notation (decimal, exponent, hexadecimal, inf, nan),
/// whatever the locale; nothing when anything is left over. Beyond the range of a double it is
/// infinite. [any thread]
std::optional<double> numberFromText(std::string_view text);

/// `format` holds one floating-point placeholder; the decimal sign is a point in every locale.
/// [any thread]
std::string formattedNumber(const char* format, double number);

/// `text` in one line that is fit for a message: unprintable bytes become '?', and what is longer
/// than 60 bytes is cut with "...".
std::string oneLine(std::string_view text);

/// `oneLine(text)` in quotation marks.
std::string inQuotes(std::string_view text);
