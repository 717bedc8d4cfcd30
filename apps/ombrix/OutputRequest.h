#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

#include "Options.h"

inline constexpr OptionRow kOutputOption{"output", "OUT.wav", "the file to write"};
inline constexpr OptionRow kForceOption{"force", nullptr, "replace the file if it exists"};
inline constexpr OptionRow kBufferOption{"buffer-frames", "N",
                                         "frames per buffer, 1 to 8192 (512)"};
inline constexpr OptionRow kLengthOption{"seconds", "S", "write exactly S seconds"};

/// What every command that writes a WAV file in place of playing is told about it.
struct OutputRequest {
    std::string output;
    bool replace = false;
    std::uint32_t bufferFrames = 512;
    std::optional<std::uint64_t> frames;  // exactly so many

    /// Answers bad use as one line, else nothing.
    [[nodiscard]] std::string read(const Arguments& arguments);
};

/// How it went, on stdout.
void tellRendered(std::uint64_t frames, std::chrono::duration<double> taken);
