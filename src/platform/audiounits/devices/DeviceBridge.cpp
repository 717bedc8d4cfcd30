#include "audiounits/devices/DeviceBridge.h"

#include <algorithm>
#include <chrono>
#include <cmath>

#include "audiounits/RenderScope.h"

namespace {

constexpr float kFullScale = 32768.f;

std::int16_t toWord(float sample) {
    if (!(sample == sample))
        return 0;
    const float scaled = std::nearbyint(sample * kFullScale);
    return static_cast<std::int16_t>(std::clamp(scaled, -kFullScale, kFullScale - 1));
}

AudioTimeStamp stamp(std::uint64_t frames) {
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return {static_cast<double>(frames), std::chrono::duration<double>(now).count()};
}

}  // namespace

DeviceBridge::DeviceBridge(AudioDeviceClient& client, double outputRate, double inputRate)
    : m_client(client),
      m_framesPerOutputFrame(kGraphRate / outputRate),
      m_words(kMaximumDeviceFrames),
      m_floats(kMaximumDeviceFrames),
      m_captured(kMaximumDeviceFrames) {
    if (outputRate != kGraphRate)
        m_output.emplace(kGraphRate, outputRate);
    if (inputRate != kGraphRate)
        m_input.emplace(inputRate, kGraphRate);
}

bool DeviceBridge::usable() const {
    return (!m_output || m_output->usable()) && (!m_input || m_input->usable());
}

void DeviceBridge::produce(std::span<float> mono) noexcept {
    RenderScope scope;
    if (m_output)
        return produceConverted(mono);
    while (!mono.empty()) {
        const auto made = pull(mono.size());
        std::ranges::copy(made, mono.begin());
        mono = mono.subspan(made.size());
    }
}

void DeviceBridge::consume(std::span<const float> mono) noexcept {
    RenderScope scope;
    if (m_input)
        return consumeConverted(mono);
    while (!mono.empty()) {
        const auto part = mono.first(std::min(mono.size(), m_words.size()));
        push(part);
        mono = mono.subspan(part.size());
    }
}

// The next frames of the client, at most `frames` and at least one.
std::span<const float> DeviceBridge::pull(std::size_t frames) noexcept {
    const std::span words(m_words.data(), std::clamp<std::size_t>(frames, 1, m_words.size()));
    m_client.produce(words, stamp(m_produced));
    m_produced += words.size();
    std::ranges::transform(words, m_floats.begin(),
                           [](std::int16_t word) { return static_cast<float>(word) / kFullScale; });
    return {m_floats.data(), words.size()};
}

void DeviceBridge::push(std::span<const float> mono) noexcept {
    std::ranges::transform(mono, m_words.begin(), toWord);
    m_client.consume({m_words.data(), mono.size()}, stamp(m_consumed));
    m_consumed += mono.size();
}

// The converter is first asked for what it still holds, so that after the very first period, which
// fills its look-ahead, one call of the client is enough for each period.
void DeviceBridge::produceConverted(std::span<float> mono) noexcept {
    for (;;) {
        const auto step = m_output->process(m_pending, mono);
        const bool stuck = step.used == 0 && step.made == 0 && !m_pending.empty();
        m_pending = m_pending.subspan(step.used);
        mono = mono.subspan(step.made);
        if (mono.empty())
            return;
        if (stuck)
            break;
        if (m_pending.empty()) {
            const double wanted = static_cast<double>(mono.size()) * m_framesPerOutputFrame;
            m_pending = pull(static_cast<std::size_t>(std::ceil(wanted)));
        }
    }
    std::ranges::fill(mono, 0.f);
    m_pending = {};
}

void DeviceBridge::consumeConverted(std::span<const float> mono) noexcept {
    for (;;) {
        const auto step = m_input->process(mono, m_captured);
        mono = mono.subspan(step.used);
        if (step.made > 0)
            push({m_captured.data(), step.made});
        else if (mono.empty() || step.used == 0)
            return;
    }
}
