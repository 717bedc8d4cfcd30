#pragma once

#include <string>

/// A moment as people write it, in the account's language and zone. [any thread but render]
namespace DateText {

/// Medium date, short time: "Nov 21, 2026, 6:05 PM", with the parts in the order of the locale and
/// plain single spaces only: some locales have others, which nobody can type in a file name.
/// `moment`: seconds since 2001-01-01 UTC.
std::string mediumDateShortTime(double moment);

}  // namespace DateText
