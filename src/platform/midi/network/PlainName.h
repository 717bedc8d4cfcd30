#pragma once

#include <string>
#include <string_view>

/// The longest name of a peer or of our own, in bytes.
inline constexpr std::size_t kLongestPeerName = 63;

/// A name from the network as plain text of one line: valid UTF-8 of at most kLongestPeerName
/// bytes, without control characters and without what turns the direction of text that follows.
/// "Unknown name" if nothing is left.
std::string plainName(std::string_view name);
