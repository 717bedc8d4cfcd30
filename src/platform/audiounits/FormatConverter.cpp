#include "audiounits/FormatConverter.h"

#include <array>
#include <span>

#include "audiounits/StreamConversion.h"
#include "audiounits/devices/AudioDevice.h"
#include "audiounits/devices/RateConverter.h"

namespace {
constexpr std::uint32_t kChunkFrames = 256;  // pulled at a time when the rates differ
}

/// What a render needs, allocated at initialise.
class FormatConverter::Workspace {
  public:
    Workspace(const StreamDescription& input, const StreamDescription& output) : m_input(input) {
        if (input.mSampleRate == output.mSampleRate)
            return;
        for (auto& rate : m_rates)
            rate = std::make_unique<RateConverter>(input.mSampleRate, output.mSampleRate);
    }

    bool usable() const { return !m_rates[0] || (m_rates[0]->usable() && m_rates[1]->usable()); }

    /// Both channels of the next `frames` frames at the output's rate.
    OSStatus fill(const InputBus& bus, const AudioTimeStamp& time, std::uint32_t frames) noexcept {
        if (!m_rates[0])
            return pull(bus, time, frames, m_made);
        std::uint32_t made = 0;
        while (made < frames) {
            if (m_pending.empty()) {
                const AudioTimeStamp own{static_cast<double>(m_pulled), time.mHostTime};
                if (const OSStatus status = pull(bus, own, kChunkFrames, m_chunk))
                    return status;
                m_pulled += kChunkFrames;
                m_pending = std::span<const float>(m_chunk[0]).first(kChunkFrames);
            }
            made += convert(made, frames);
        }
        return noErr;
    }

    std::span<float> channel(std::uint32_t c, std::uint32_t frames) noexcept {
        return std::span(m_made[c]).first(frames);
    }

  private:
    using Channels = std::array<std::array<float, kMaximumDeviceFrames>, 2>;

    OSStatus pull(const InputBus& bus, const AudioTimeStamp& time, std::uint32_t frames,
                  Channels& into) noexcept {
        AudioUnitRenderActionFlags flags = 0;
        AudioBufferList list = m_scratch.list(m_input, frames);
        if (const OSStatus status = bus.pull(&flags, &time, 0, frames, &list))
            return status;
        for (std::uint32_t c = 0; c < 2; ++c)
            StreamConversion::read(list, m_input, c, std::span(into[c]).first(frames));
        return noErr;
    }

    // Both channels see the same numbers of frames, so they take the same steps.
    std::uint32_t convert(std::uint32_t made, std::uint32_t frames) noexcept {
        const auto offset = static_cast<std::size_t>(m_pending.data() - m_chunk[0].data());
        RateConverter::Step step;
        for (std::size_t c = 0; c < 2; ++c)
            step = m_rates[c]->process({m_chunk[c].data() + offset, m_pending.size()},
                                       std::span(m_made[c]).subspan(made, frames - made));
        m_pending = m_pending.subspan(step.used);
        return static_cast<std::uint32_t>(step.made);
    }

    StreamDescription m_input;
    StreamScratch m_scratch{kMaximumDeviceFrames};
    Channels m_made;
    Channels m_chunk;
    std::array<std::unique_ptr<RateConverter>, 2> m_rates;  // null at equal rates
    std::span<const float> m_pending;                       // of m_chunk[0], not yet used
    std::uint64_t m_pulled = 0;                             // frames at the input's rate
};

FormatConverter::FormatConverter() = default;

FormatConverter::~FormatConverter() = default;

OSStatus FormatConverter::initialise() {
    auto workspace = std::make_unique<Workspace>(m_inputs.table()[0].format, m_output);
    if (!workspace->usable())
        return kAudioUnitErr_FormatNotSupported;
    m_workspace = std::move(workspace);
    return noErr;
}

OSStatus FormatConverter::uninitialise() {
    m_workspace.reset();
    return noErr;
}

OSStatus FormatConverter::render(AudioUnitRenderActionFlags* flags, const AudioTimeStamp* time,
                                 std::uint32_t bus, std::uint32_t frames, AudioBufferList* data) {
    if (const OSStatus wrong = checkRender(m_workspace != nullptr, bus, frames))
        return wrong;
    if (const OSStatus status = m_workspace->fill(m_inputs.table()[0], *time, frames))
        return status;
    const auto left = m_workspace->channel(0, frames);
    const auto right = m_workspace->channel(1, frames);
    if (m_output.mChannelsPerFrame == 1) {
        for (std::uint32_t i = 0; i < frames; ++i)
            left[i] = (left[i] + right[i]) * 0.5f;
    } else {
        StreamConversion::write(right, m_output, 1, *data);
    }
    StreamConversion::write(left, m_output, 0, *data);
    *flags &= ~kAudioUnitRenderAction_OutputIsSilence;
    return noErr;
}
