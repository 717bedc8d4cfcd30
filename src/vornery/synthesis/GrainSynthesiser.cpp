#include "GrainSynthesiser.h"

#include <algorithm>
#include <cmath>
#include <mutex>

#include "GrainLoop.h"
#include "PullUpstream.h"

namespace {
constexpr std::uint32_t kLongestSound = 1u << 30;  // frames, so that positions fit in 31 bits
}

GrainSynthesiser::GrainSynthesiser(std::shared_ptr<const ContiguousWave> source)
    : VornCallbackUnit(&render, StreamDescription::float32(1)) {
    m_note.lock = &m_lock;
    lookAt(source);
}

GrainSynthesiser::~GrainSynthesiser() {
    untrigger();
}

// Takes over `source` and hands back the one before it.
void GrainSynthesiser::lookAt(std::shared_ptr<const ContiguousWave>& source) {
    const std::uint32_t sampleCount = source ? source->sampleCount() : 0;
    std::uint32_t readable = sampleCount;
    const float* data = source ? source->retrieveWindowAt(0, &readable, nullptr) : nullptr;
    std::lock_guard guard(m_lock);
    m_note.triggered = false;
    m_source.swap(source);
    m_sampleCount = sampleCount;
    m_data = data;
    // Silence: nothing, or less than it promised, or too long to be counted.
    m_isReadable =
        data && sampleCount > 0 && readable >= sampleCount && sampleCount <= kLongestSound;
}

void GrainSynthesiser::setWaveSource(std::shared_ptr<const ContiguousWave> source) {
    lookAt(source);
}

void GrainSynthesiser::trigger() noexcept {
    std::lock_guard guard(m_lock);
    if (m_note.triggered)
        m_note.retrigger = true;
    else
        m_note.reversed = false;
    m_note.triggered = true;
}

void GrainSynthesiser::untrigger() noexcept {
    std::lock_guard guard(m_lock);
    if (m_note.stopOnUntrigger != 0)
        m_note.triggered = false;
    for (auto& head : m_note.heads)
        head = 0.f;
}

OSStatus GrainSynthesiser::render(void* context, AudioUnitRenderActionFlags* flags,
                                  const AudioTimeStamp*, std::uint32_t, std::uint32_t frames,
                                  AudioBufferList* data) {
    auto& unit = *static_cast<GrainSynthesiser*>(context);
    std::lock_guard guard(unit.m_lock);
    if (!unit.m_streamDescription.isFloat())
        return noErr;
    const bool sounds =
        unit.m_note.triggered && unit.m_isReadable && std::isfinite(unit.m_note.frequency.load());
    markSilence(flags, !sounds);
    if (sounds) {
        renderGrains(unit.m_note, {unit.m_data, unit.m_sampleCount}, data->samples<float>(),
                     frames);
        return noErr;
    }
    std::fill_n(data->samples<float>(), frames, 0.f);
    unit.m_note.smoothedGain = unit.m_note.gain.load();
    return noErr;
}
