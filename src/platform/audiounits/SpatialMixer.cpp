#include "audiounits/SpatialMixer.h"

#include <array>

namespace {

struct Parameter {
    float least;
    float most;
    float initial;
};
// By parameter id.
constexpr std::array<Parameter, 4> kParameters{{
    {-180.f, 180.f, 0.f},  // azimuth, degrees
    {-90.f, 90.f, 0.f},    // elevation, degrees
    {0.f, 10000.f, 1.f},   // distance, metres
    {-120.f, 20.f, 0.f},   // gain, decibels
}};

}  // namespace

struct SpatialMixer::Bus {
    std::array<std::atomic<float>, kParameters.size()> values;  // by parameter id

    // [render]
    Placement place;               // what `target` was made from
    bool mono = true;              // likewise
    ChannelGains target;           // at the end of this render
    ChannelGains now;              // at the end of the last one that was heard
    std::uint64_t lastRender = 0;  // number of that one; 0 is none

    Bus() { reset(); }
    void reset() {
        for (std::size_t i = 0; i < values.size(); ++i)
            values[i].store(kParameters[i].initial, std::memory_order_relaxed);
    }
    Placement wanted() const noexcept {
        const auto value = [this](auto id) { return values[id].load(std::memory_order_relaxed); };
        return {value(k3DMixerParam_Azimuth), value(k3DMixerParam_Elevation),
                value(k3DMixerParam_Distance), value(k3DMixerParam_Gain)};
    }
};

SpatialMixer::SpatialMixer() : m_buses(kMaximumBuses) {}

SpatialMixer::~SpatialMixer() = default;

OSStatus SpatialMixer::setProperty(AudioUnitPropertyID property, AudioUnitScope scope,
                                   AudioUnitElement element, const void* data, std::uint32_t size) {
    const OSStatus status = BusMixer::setProperty(property, scope, element, data, size);
    if (status == noErr && property == kAudioUnitProperty_ElementCount) {
        for (std::size_t gone = m_inputs.table().size(); gone < m_buses.size(); ++gone)
            m_buses[gone].reset();
    }
    return status;
}

OSStatus SpatialMixer::check(AudioUnitParameterID parameter, AudioUnitScope scope,
                             AudioUnitElement element) const {
    if (parameter >= kParameters.size())
        return kAudioUnitErr_InvalidParameter;
    if (scope != kAudioUnitScope_Input)
        return kAudioUnitErr_InvalidScope;
    return element < m_inputs.table().size() ? noErr : kAudioUnitErr_InvalidElement;
}

OSStatus SpatialMixer::setParameter(AudioUnitParameterID parameter, AudioUnitScope scope,
                                    AudioUnitElement element, AudioUnitParameterValue value) {
    if (const OSStatus wrong = check(parameter, scope, element))
        return wrong;
    const auto& range = kParameters[parameter];
    if (!(value >= range.least && value <= range.most))  // not-a-number ends here too
        return kAudioUnitErr_InvalidParameterValue;
    m_buses[element].values[parameter].store(value, std::memory_order_relaxed);
    return noErr;
}

OSStatus SpatialMixer::parameter(AudioUnitParameterID parameter, AudioUnitScope scope,
                                 AudioUnitElement element, AudioUnitParameterValue* value) {
    if (const OSStatus wrong = check(parameter, scope, element))
        return wrong;
    *value = m_buses[element].values[parameter].load(std::memory_order_relaxed);
    return noErr;
}

OSStatus SpatialMixer::render(AudioUnitRenderActionFlags* flags, const AudioTimeStamp* time,
                              std::uint32_t bus, std::uint32_t frames, AudioBufferList* data) {
    if (frames > 0)
        ++m_renderCount;
    return BusMixer::render(flags, time, bus, frames, data);
}

const ChannelGains& SpatialMixer::target(Bus& bus) const noexcept {
    const Placement wanted = bus.wanted();
    const bool mono = m_output.mChannelsPerFrame == 1;
    if (bus.lastRender == 0 || mono != bus.mono || wanted != bus.place) {
        bus.target = mono ? Panning::mono(wanted) : Panning::stereo(wanted);
        bus.place = wanted;
        bus.mono = mono;
    }
    return bus.target;
}

bool SpatialMixer::leavesAlone(AudioUnitElement element) noexcept {
    Bus& bus = m_buses[element];
    const bool heardBefore = bus.lastRender + 1 == m_renderCount;
    if (target(bus) != ChannelGains{1.f, 1.f} || (heardBefore && bus.now != bus.target))
        return false;
    bus.now = bus.target;
    bus.lastRender = m_renderCount;
    return true;
}

void SpatialMixer::add(const Pulled& pulled, Workspace& workspace) noexcept {
    if (pulled.frames == 0)
        return;
    Bus& bus = m_buses[pulled.element];
    const ChannelGains to = target(bus);
    const ChannelGains from = bus.lastRender + 1 == m_renderCount ? bus.now : to;
    const std::uint32_t channels = pulled.format.mChannelsPerFrame;
    const float share = 1.f / static_cast<float>(channels);
    const auto mix = [&](auto& sum, float first, float last) {
        const auto& channel = workspace.channel;
        const float step = (last - first) / static_cast<float>(pulled.frames);
        for (std::uint32_t i = 0; i < pulled.frames; ++i)
            sum[i] += channel[i] * (first + step * static_cast<float>(static_cast<int>(i) + 1));
    };
    for (std::uint32_t c = 0; c < channels; ++c) {
        StreamConversion::read(pulled.list, pulled.format, c,
                               {workspace.channel.data(), pulled.frames});
        mix(workspace.sums[0], from.left * share, to.left * share);
        mix(workspace.sums[1], from.right * share, to.right * share);
    }
    bus.now = to;
    bus.lastRender = m_renderCount;
}
