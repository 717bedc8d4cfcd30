#pragma once

#include <string>

/// How recordings show their length.
namespace MinutesAndSeconds {

/// Whole seconds since a moment on Clock::monotonic. Sums of seconds may fall a rounding short of a
/// whole one, so a microsecond is forgiven.
int since(double moment);
/// "%02d:%02d"
std::string text(int seconds);

}  // namespace MinutesAndSeconds
