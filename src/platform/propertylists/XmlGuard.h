#pragma once

#include <string_view>

/// Refuses XML on which a parser could spend much more time than the file is long: tags of more
/// than 256 bytes (attributes are compared with each other) and document types with declarations of
/// their own (entities, default attributes). Text, comments and CDATA may be of any length. What is
/// not well formed is left to the parser. Throws PropertyListRefusal; `position` is where it got
/// to.
void guardXml(std::string_view xml, std::size_t& position);
