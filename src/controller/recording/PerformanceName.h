#pragma once

#include <string>

/// Names of recorded performances. [main]
namespace PerformanceName {

/// "Recorded Live - %@.wav" with a date text, in which "/", "\" and ":" become "-"; white space
/// around the date goes. Other recordings have another beginning.
std::string of(std::string date, const std::string& beginning = "Recorded Live - ");

/// Full path of a new sound file of no frames in the data folder, named after the moment (seconds
/// since 2001-01-01 UTC); where there is one already, or a MIDI file that would stand beside it,
/// " 2" and so on stands before the extension.
/// Nobody else gets the same. On failure empty, with one line in `error`.
std::string reserve(double moment, std::string& error);

}  // namespace PerformanceName
