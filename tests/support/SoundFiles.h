#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// Sound files for tests: bytes of our own, and files written by foreign programs.
namespace SoundFiles {

struct WavShape {
    std::uint32_t rate = 44100;  // frames per second
    std::uint16_t channels = 1;
    std::uint16_t bits = 16;
    bool floats = false;
    std::optional<std::uint32_t> claim =
        std::nullopt;  // bytes that the header says; none: the truth
};

/// A whole WAV file around `data`, packed little-endian samples.
std::string wav(const WavShape& shape, const std::string& data);

template <typename Sample>
std::string bytes(const std::vector<Sample>& samples) {
    return {reinterpret_cast<const char*>(samples.data()), samples.size() * sizeof(Sample)};
}

/// Of a WAV file of 16 bits with the smallest header; none where there is no such file.
std::vector<std::int16_t> samplesOf(const std::string& path);

/// Values in [-1, 1) that are whole multiples of 2^(1 - bits), from a fixed seed.
std::vector<double> noise(std::size_t count, int bits);

void write(const std::string& path, const std::string& bytes);

/// Has ffmpeg write interleaved `samples` to `path`. `options` pick codec and container.
bool ffmpegWrites(const std::string& path, const std::vector<double>& samples, int channels,
                  int rate, const std::string& options);

/// Runs a shell command quietly; true when it ends well.
bool runs(const std::string& command);

}  // namespace SoundFiles
