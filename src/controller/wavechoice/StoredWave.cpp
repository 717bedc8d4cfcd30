#include "wavechoice/StoredWave.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>

#include "files/VornOutputAudioFile.h"
#include "storage/AsideFile.h"

namespace {

constexpr std::uint32_t kMostFrames = 0x7fffffe0;  // what 32-bit sizes of a WAV file leave room for

std::uint32_t strideOf(const WaveWindow& window) {
    return window.format == static_cast<std::int32_t>(WaveFormat::mono) ? 1 : 2;
}

/// Frames from the first window on that follow one another in memory.
std::uint64_t framesInOnePiece(const WaveWindow* window) {
    const std::uint32_t stride = strideOf(*window);
    const float* const begin = window->data;
    std::uint64_t frames = 0;
    for (; window->data == begin + frames * stride && strideOf(*window) == stride; ++window) {
        if (window->frameCount == 0)
            break;
        frames += window->frameCount;
    }
    return frames;
}

std::string failure(const std::string& path, const std::string& reason) {
    return path + ": " + reason;
}

}  // namespace

std::int16_t StoredWave::sixteenBits(float sample) {
    using Limits = std::numeric_limits<std::int32_t>;
    const double scaled = std::trunc(static_cast<double>(sample) * 32767.0);
    if (std::isnan(scaled))
        return 0;
    const double held = std::clamp<double>(scaled, Limits::min(), Limits::max());
    return static_cast<std::int16_t>(static_cast<std::int32_t>(held));
}

std::optional<std::vector<std::int16_t>> StoredWave::samplesOf(const VornWaveSequence& wave) {
    std::uint32_t count = wave.sampleCount();
    std::vector<std::int16_t> samples(count);
    if (count == 0)
        return samples;
    const WaveWindowList windows = wave.retrieveWindowsAt(0, &count);
    if (!windows || !windows[0].data)
        return std::nullopt;
    const std::uint32_t stride = strideOf(windows[0]);
    const std::size_t held = std::min<std::uint64_t>(samples.size(), framesInOnePiece(&windows[0]));
    for (std::size_t i = 0; i < held; ++i)
        samples[i] = sixteenBits(windows[0].data[i * stride]);
    return samples;
}

std::string StoredWave::store(const VornWaveSequence& wave, const std::string& path,
                              FileNames::Existing existing) {
    if (wave.sampleCount() > kMostFrames)
        return failure(path, "cannot be written: the sound is longer than a WAV file can be");
    const auto samples = samplesOf(wave);
    if (!samples)
        return failure(path, "cannot be written: the sound is not loaded");
    AsideFile aside(path);
    if (!aside.error().empty())
        return aside.error();
    VornOutputAudioFile file(aside.path(), kWaveFileType, StreamDescription::sint16(1));
    const auto bytes = static_cast<std::uint32_t>(samples->size() * sizeof(std::int16_t));
    std::uint32_t written = bytes;
    file.writePackets(samples->data(), 0, &written, nullptr);
    if (const OSStatus status = file.close())
        return failure(path, audioFileWriteProblem(status));
    if (written != bytes)
        return failure(path, "cannot be written: not all of it was taken");
    if (existing == FileNames::Existing::replace)
        return aside.replaceTarget() ? "" : aside.error();
    const AsideFile::Put put = aside.putNew(path);
    return put == AsideFile::Put::taken ? failure(path, "exists already; choose another name")
                                        : aside.error();
}
