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

}  // namespace ForeignReaders
