#pragma once

#include <string>
#include <string_view>

/// UTF-8 text by the rules of Unicode, whatever the locale. Bytes that are no UTF-8 count as
/// U+FFFD. [any thread but render]
namespace UnicodeText {

bool isUtf8(std::string_view text);
/// Without white space and line ends at either side.
std::string trimmed(std::string_view text);
std::string lowerCased(std::string_view text);
/// Control characters and line or paragraph separators: what cannot stand in a name of one line.
bool hasControls(std::string_view text);
std::string withoutControls(std::string_view text);
/// As many whole characters as fit into `bytes`.
std::string_view cut(std::string_view text, std::size_t bytes);
/// Columns that it takes in a terminal: two for a wide character, none for an accent on another.
std::size_t columns(std::string_view text);

}  // namespace UnicodeText
