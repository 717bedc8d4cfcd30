#pragma once

#include <string>
#include <vector>

/// What foreign programs make of a WAV file: ffmpeg, sox and Python's wave module (which knows
/// integers only and is left out for floats).
namespace ForeignReaders {

struct Reading {
    std::string reader;
    bool opened;
    std::string samples;  // interleaved bytes, as they stand in the file
};
std::vector<Reading> readAll(const std::string& path, bool floats = false);

/// The notes of a MIDI file of one track, read by a script: "SECONDS on|off KEY VELOCITY" a line,
/// then "SECONDS end". Less for a broken one.
std::vector<std::string> readMidi(const std::string& path);

}  // namespace ForeignReaders
