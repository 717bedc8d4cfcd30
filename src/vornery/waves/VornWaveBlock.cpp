#include "VornWaveBlock.h"

#include <algorithm>
#include <limits>

#include "SharedSilence.h"
#include "VornWave2.h"
#include "VornWaveSequence.h"

namespace {

/// What is left of `count` frames from `at` on in a sound of `length`.
std::uint32_t framesFrom(std::uint32_t at, std::uint32_t count, std::uint32_t length) {
    return std::min(count, length - std::min(at, length));
}

/// Stays at the largest number, where no wave has frames, instead of starting over.
std::uint32_t sumOf(std::uint32_t a, std::uint32_t b) {
    return a + std::min(b, std::numeric_limits<std::uint32_t>::max() - a);
}

}  // namespace

VornWaveBlock::Pointer VornWaveBlock::initWithWave(std::shared_ptr<VornWave2> wave,
                                                   std::uint32_t start, std::uint32_t count) {
    Pointer block(new VornWaveBlock);
    block->m_myAudioDescription = *wave->audioDescription();
    block->m_wave = std::move(wave);
    block->m_startIndex = start;
    block->m_frameCount = count;
    return block;
}

VornWaveBlock::Pointer VornWaveBlock::blockWithWave(std::shared_ptr<VornWave2> wave) {
    const std::uint32_t count = wave->sampleCount();
    return initWithWave(std::move(wave), 0, count);
}

VornWaveBlock::Pointer VornWaveBlock::initWithSilenceOfLength(std::uint32_t length,
                                                              std::uint32_t channels,
                                                              const std::string& folder) {
    Pointer block(new VornWaveBlock);
    block->m_frameCount = length;
    block->m_myAudioDescription = StreamDescription::float32(channels);
    block->m_silenceFolder = folder;
    return block;
}

WaveWindowList VornWaveBlock::retrieveWindowsAt(std::uint32_t at, std::uint32_t* count) const {
    *count = framesFrom(at, *count, m_frameCount);
    if (!m_wave)
        return silentWindows(*count);
    WaveWindowList list = m_wave->retrieveWindowsAt(sumOf(m_startIndex, at), count);
    for (WaveWindow* window = list.get(); window && window->data; ++window)
        window->owner = this;
    return list;
}

WaveWindowList VornWaveBlock::silentWindows(std::uint32_t count) const {
    if (count == 0)
        return nullptr;
    const bool mono = m_myAudioDescription.mChannelsPerFrame == 1;
    // So that no window reaches past the shared silence.
    const std::uint32_t chunk = mono ? kSharedSilenceFloats : kSharedSilenceFloats / 2;
    const auto format = static_cast<std::int32_t>(mono ? WaveFormat::mono  //
                                                       : WaveFormat::stereoInterleaved);
    const std::size_t windows = (std::uint64_t{count} + chunk - 1) / chunk;
    auto list = std::make_unique<WaveWindow[]>(windows + 1);
    std::fill_n(list.get(), windows, WaveWindow{this, sharedSilence(), chunk, format});
    list[windows - 1].frameCount = count - static_cast<std::uint32_t>(windows - 1) * chunk;
    return list;
}

const float* VornWaveBlock::retrieveWindowAt(std::uint32_t at, std::uint32_t* count,
                                             std::int32_t* format) const {
    if (!m_wave)
        return nullptr;
    *count = framesFrom(at, *count, m_frameCount);
    return m_wave->retrieveWindowAt(sumOf(m_startIndex, at), count, format);
}

std::shared_ptr<WaveAccess> VornWaveBlock::sliceBlockFrom(std::uint32_t from,
                                                          std::uint32_t count) const {
    return slice(from, count);
}

VornWaveBlock::Pointer VornWaveBlock::slice(std::uint32_t from, std::uint32_t count) const {
    const std::uint32_t length = framesFrom(from, count, m_frameCount);
    return m_wave ? blockWithWave(m_wave, sumOf(m_startIndex, from), length)
                  : blockOfSilenceLength(length, m_myAudioDescription.mChannelsPerFrame,
                                         m_silenceFolder);
}

std::shared_ptr<VornWaveSequence> VornWaveBlock::sliceFrom(std::uint32_t from,
                                                           std::uint32_t count) const {
    return VornWaveSequence::sequenceWithBlock(slice(from, count));
}

void VornWaveBlock::ensureSilentWave() {
    if (!m_wave)
        m_wave = VornWave2::mutableWaveOfLength(m_frameCount, m_myAudioDescription, "Untitled",
                                                m_silenceFolder);
}

float* VornWaveBlock::mutableData() {
    ensureSilentWave();
    return m_wave->mutableData();
}
