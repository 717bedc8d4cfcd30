#include "ToneClient.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <numbers>
#include <thread>

#include "audiounits/RenderScope.h"

namespace {
constexpr std::size_t kKept = 44100 * 20;
}

ToneClient::ToneClient() : m_recorded(kKept) {}

void ToneClient::note(std::size_t frames, const AudioTimeStamp& time, std::uint64_t expected) {
    const bool together = m_inside.exchange(true);
    const bool wrongTime = time.mSampleTime != static_cast<double>(expected);
    if (together || frames == 0 || frames > kMaximumDeviceFrames || wrongTime ||
        !RenderScope::active())
        ++m_faults;
    m_longest = std::max(m_longest.load(), frames);
}

void ToneClient::produce(std::span<std::int16_t> mono, const AudioTimeStamp& time) noexcept {
    note(mono.size(), time, m_produced);
    for (std::size_t i = 0; i < mono.size(); ++i) {
        const double cycles = kHertz * static_cast<double>(m_produced + i) / 44100.0;
        const double sample = kAmplitude * std::sin(2 * std::numbers::pi * std::fmod(cycles, 1.0));
        mono[i] = static_cast<std::int16_t>(std::lround(sample * 32767));
    }
    m_produced += mono.size();
    m_inside = false;
}

void ToneClient::consume(std::span<const std::int16_t> mono, const AudioTimeStamp& time) noexcept {
    note(mono.size(), time, m_heard);
    const std::size_t begin = std::min<std::size_t>(m_heard, kKept);
    std::ranges::copy(mono.first(std::min(mono.size(), kKept - begin)),
                      m_recorded.begin() + static_cast<std::ptrdiff_t>(begin));
    m_heard += mono.size();
    m_inside = false;
}

std::vector<float> ToneClient::recording() const {
    std::vector<float> floats(std::min<std::size_t>(m_heard, kKept));
    std::transform(m_recorded.begin(), m_recorded.begin() + std::ptrdiff_t(floats.size()),
                   floats.begin(), [](std::int16_t word) { return float(word) / 32768.f; });
    return floats;
}

bool ToneClient::playsOn(std::uint64_t frames) const {
    const std::uint64_t wanted = m_produced + frames;
    for (int i = 0; i < 2000 && m_produced < wanted; ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    return m_produced >= wanted;
}
