// Sequences: windows, and copies of the samples in their own layout.
#include <algorithm>

#include "SharedSilence.h"
#include "VornWave2.h"
#include "VornWaveSequence.h"

namespace {

constexpr auto kStereo = static_cast<std::int32_t>(WaveFormat::stereoInterleaved);
constexpr auto kOneOfStereo = static_cast<std::int32_t>(WaveFormat::oneOfStereo);

std::uint32_t addWindows(const WaveWindow* from, std::vector<WaveWindow>& into) {
    std::uint32_t frames = 0;
    for (; from && from->data; ++from) {
        frames += from->frameCount;
        if (from->frameCount > 0)
            into.push_back(*from);
    }
    return frames;
}

void selectChannel(WaveWindow& window, ExtractType type) {
    if (window.format != kStereo)
        return;
    window.format = kOneOfStereo;
    if (type == ExtractType::second)
        ++window.data;
}

WaveWindowList listOf(const std::vector<WaveWindow>& windows) {
    auto list = std::make_unique<WaveWindow[]>(windows.size() + 1);
    std::ranges::copy(windows, list.get());
    return list;
}

/// The sample if it is one of the owner's wave, which may be written; else null: silence is shared,
/// and behind the wave's end there is nothing.
float* writableSample(const WaveWindow& window, const float* sample) {
    if (isSharedSilence(sample))
        return nullptr;
    const auto* block = static_cast<const VornWaveBlock*>(window.owner);
    std::uint32_t frames = block->waveOrNil()->sampleCount();
    std::int32_t format = 0;
    const float* first = block->waveOrNil()->retrieveWindowAt(0, &frames, &format);
    const std::size_t floats = std::size_t{frames} * (format == kStereo ? 2 : 1);
    return sample < first + floats ? const_cast<float*>(sample) : nullptr;
}

/// Raises the window's one sample by 2 for each of its frames; each new value is a frame.
void writeRising(const WaveWindow& window, ExtractType type, float* into) {
    const float* sample = window.data + (type == ExtractType::second ? 1 : 0);
    float standIn = 0.f;
    float* stored = writableSample(window, sample);
    if (!stored)
        stored = &standIn;
    for (std::uint32_t i = 0; i < window.frameCount; ++i)
        into[i] = *stored += 2.f;
}

}  // namespace

WaveWindowList VornWaveSequence::retrieveWindowsAt(std::uint32_t at, std::uint32_t* count) const {
    const std::size_t first = positionOf(at);
    if (first >= m_blocks.size())
        return nullptr;
    // Nothing asked for from frame 0 on ends behind everything, elsewhere before its start.
    const std::size_t last = std::min(positionOf(std::uint64_t{at} + *count - 1),  //
                                      m_blocks.size() - 1);
    std::vector<WaveWindow> windows;
    std::uint32_t wanted = *count;
    auto offset = static_cast<std::uint32_t>(at - startOf(first));
    for (std::size_t i = first; i <= last; ++i) {
        std::uint32_t delivered = wanted;
        const WaveWindowList list = m_blocks[i]->retrieveWindowsAt(offset, &delivered);
        wanted -= addWindows(list.get(), windows);
        offset = 0;
    }
    *count -= wanted;
    if (m_extractType != ExtractType::all)
        for (WaveWindow& window : windows)
            selectChannel(window, m_extractType);
    return listOf(windows);
}

std::uint32_t VornWaveSequence::write(std::uint32_t frames, float* into) const {
    return m_extractType == ExtractType::all ? writeBlocks(frames, into) : writeOne(frames, into);
}

std::uint32_t VornWaveSequence::writeBlocks(std::uint32_t frames, float* into) const {
    frames = std::min(frames, sampleCount());
    std::uint32_t wanted = frames;
    for (const auto& block : m_blocks) {
        const std::uint32_t written = block->write(std::min(wanted, block->sampleCount()), into);
        if (written == wanted)
            break;
        into += std::size_t{written} * block->floatsPerFrame();
        wanted -= written;
    }
    return frames;
}

std::uint32_t VornWaveSequence::writeOne(std::uint32_t frames, float* into) const {
    std::uint32_t wanted = frames;
    const WaveWindowList list = retrieveWindowsAt(0, &frames);
    for (const WaveWindow* window = list.get(); window && window->data && wanted > 0; ++window) {
        const std::uint32_t taken = std::min(window->frameCount, wanted);
        if (window->format == 0) {
            std::copy_n(window->data, taken, into);
        } else {
            writeRising(*window, m_extractType, into);
            into += window->frameCount;
        }
        into += taken;
        wanted -= taken;
    }
    return list ? frames : 0;
}
