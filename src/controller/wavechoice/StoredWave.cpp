#include "wavechoice/StoredWave.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <optional>
#include <vector>

#include "files/VornOutputAudioFile.h"
#include "storage/AsideFile.h"

namespace {

constexpr std::uint32_t kPart = 1 << 18;  // frames between two looks at whether it is wanted
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

/// A sound's samples in one piece, and how many there are.
struct Samples {
    const float* data;
    std::uint32_t stride;
    std::uint64_t frames;
};

/// None while the sound is loading.
std::optional<Samples> firstSampleOf(const VornWaveSequence& wave) {
    std::uint32_t count = wave.sampleCount();
    if (count == 0)
        return Samples{nullptr, 1, 0};
    const WaveWindowList windows = wave.retrieveWindowsAt(0, &count);
    if (!windows || !windows[0].data)
        return std::nullopt;
    return Samples{windows[0].data, strideOf(windows[0]), framesInOnePiece(&windows[0])};
}

/// `frames` of them, then zeros. False when it was given up or not all was taken.
bool writeSamples(const Samples& samples, std::uint32_t frames, VornOutputAudioFile& file,
                  const Shared<bool>& unwanted) {
    std::vector<std::int16_t> part(std::min(frames, kPart));
    for (std::uint32_t at = 0; at < frames && !unwanted; at += kPart) {
        part.resize(std::min(frames - at, kPart));
        for (std::size_t i = 0; i < part.size(); ++i)
            part[i] = at + i < samples.frames
                          ? StoredWave::sixteenBits(samples.data[(at + i) * samples.stride])
                          : std::int16_t{0};
        const auto bytes = static_cast<std::uint32_t>(part.size() * sizeof(std::int16_t));
        std::uint32_t written = bytes;
        file.writePackets(part.data(), at, &written, nullptr);
        if (written != bytes)
            return false;
    }
    return !unwanted;
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

std::string StoredWave::store(const VornWaveSequence& wave, const std::string& path,
                              FileNames::Existing existing) {
    return store(wave, path, existing, Shared<bool>(false));
}

std::string StoredWave::store(const VornWaveSequence& wave, const std::string& path,
                              FileNames::Existing existing, const Shared<bool>& unwanted) {
    if (wave.sampleCount() > kMostFrames)
        return failure(path, "cannot be written: the sound is longer than a WAV file can be");
    const auto first = firstSampleOf(wave);
    if (!first)
        return failure(path, "cannot be written: the sound is not loaded");
    AsideFile aside(path);
    if (!aside.error().empty())
        return aside.error();
    VornOutputAudioFile file(aside.path(), kWaveFileType, StreamDescription::sint16(1));
    const bool whole = writeSamples(*first, wave.sampleCount(), file, unwanted);
    if (const OSStatus status = file.close())
        return failure(path, audioFileWriteProblem(status));
    if (!whole)
        return failure(path, unwanted ? "is not wanted any more"
                                      : "cannot be written: not all of it was taken");
    if (existing == FileNames::Existing::replace)
        return aside.replaceTarget() ? "" : aside.error();
    const AsideFile::Put put = aside.putNew(path);
    return put == AsideFile::Put::taken ? failure(path, "exists already; choose another name")
                                        : aside.error();
}
