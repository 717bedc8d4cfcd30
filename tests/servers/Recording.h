#pragma once

#include <string>
#include <vector>

/// A sound file that a foreign program has written.
struct Recording {
    std::vector<float> frames;  // interleaved
    std::size_t channels = 0;
    double rate = 0;
};

/// Empty for a file that is not there or no sound.
Recording readRecording(const std::string& path);
