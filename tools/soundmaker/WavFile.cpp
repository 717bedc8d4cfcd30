#include "WavFile.h"

#include <cmath>
#include <cstdint>
#include <filesystem>
#include <fstream>

#include "Random.h"

namespace {

void put(std::string& bytes, std::uint32_t value, int count) {
    for (int i = 0; i < count; ++i)
        bytes += char(value >> (8 * i));
}

std::string header(std::uint32_t dataBytes) {
    const auto rate = std::uint32_t(kFramesPerSecond);
    std::string bytes = "RIFF";
    put(bytes, 36 + dataBytes, 4);
    bytes += "WAVEfmt ";
    put(bytes, 16, 4);        // bytes that follow
    put(bytes, 1, 2);         // linear PCM
    put(bytes, 1, 2);         // channels
    put(bytes, rate, 4);      // frames a second
    put(bytes, 2 * rate, 4);  // bytes a second
    put(bytes, 2, 2);         // bytes a frame
    put(bytes, 16, 2);        // bits
    bytes += "data";
    put(bytes, dataBytes, 4);
    return bytes;
}

}  // namespace

bool writeWav(const std::string& path, const Sound& sound) {
    Random random(1992);
    std::string bytes = header(std::uint32_t(2 * sound.size()));
    for (const double sample : sound) {
        const double dither = random.uniform() - random.uniform();
        const double steps = sample == 0 ? 0 : std::floor(sample * 32767 + dither + 0.5);
        put(bytes, std::uint32_t(std::int32_t(steps)), 2);
    }
    std::ofstream file(path, std::ios::binary);
    file.write(bytes.data(), std::streamsize(bytes.size()));
    file.close();
    if (file)
        return true;
    std::error_code ignored;
    std::filesystem::remove(path, ignored);
    return false;
}
