#include "SoundFiles.h"

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <random>

#include "Contents.h"

namespace {

void append(std::string& bytes, std::uint32_t value, int width) {
    for (int i = 0; i < width; ++i)
        bytes += static_cast<char>(value >> (8 * i));
}

}  // namespace

std::string SoundFiles::wav(const WavShape& shape, const std::string& data) {
    const auto size = static_cast<std::uint32_t>(data.size());
    const auto frameBytes = static_cast<std::uint32_t>(shape.channels * shape.bits / 8);
    std::string file = "RIFF";
    append(file, 36 + size, 4);
    file += "WAVEfmt ";
    append(file, 16, 4);
    append(file, shape.floats ? 3 : 1, 2);
    append(file, shape.channels, 2);
    append(file, shape.rate, 4);
    append(file, shape.rate * frameBytes, 4);
    append(file, frameBytes, 2);
    append(file, shape.bits, 2);
    file += "data";
    append(file, shape.claim.value_or(size), 4);
    return file + data;
}

std::vector<std::int16_t> SoundFiles::samplesOf(const std::string& path) {
    constexpr std::size_t kHeader = 44;
    const std::string bytes = contentsOf(path);
    std::vector<std::int16_t> samples(bytes.size() < kHeader ? 0 : (bytes.size() - kHeader) / 2);
    if (!samples.empty())
        std::memcpy(samples.data(), bytes.data() + kHeader, samples.size() * 2);
    return samples;
}

std::vector<double> SoundFiles::noise(std::size_t count, int bits) {
    std::minstd_rand generator(1234);
    const double grid = std::ldexp(1.0, bits - 1);
    std::uniform_int_distribution<std::int64_t> draw(static_cast<std::int64_t>(-grid),
                                                     static_cast<std::int64_t>(grid) - 1);
    std::vector<double> values(count);
    for (double& value : values)
        value = static_cast<double>(draw(generator)) / grid;
    return values;
}

void SoundFiles::write(const std::string& path, const std::string& bytes) {
    std::ofstream(path, std::ios::binary)
        .write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

bool SoundFiles::ffmpegWrites(const std::string& path, const std::vector<double>& samples,
                              int channels, int rate, const std::string& options) {
    const std::string raw = path + ".raw";
    write(raw, bytes(samples));
    const bool done =
        runs("ffmpeg -y -f f64le -ac " + std::to_string(channels) + " -ar " + std::to_string(rate) +
             " -i '" + raw + "' " + options + " '" + path + "'");
    std::filesystem::remove(raw);
    return done;
}

bool SoundFiles::runs(const std::string& command) {
    return std::system((command + " >/dev/null 2>&1 </dev/null").c_str()) == 0;
}
