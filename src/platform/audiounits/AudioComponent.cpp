#include "audiounits/AudioComponent.h"

#include <algorithm>

#include "audiounits/Equaliser.h"
#include "audiounits/FormatConverter.h"
#include "audiounits/HardwareIO.h"
#include "audiounits/MultichannelMixer.h"
#include "audiounits/SpatialMixer.h"

namespace {

bool matches(const AudioComponentDescription& wanted, const AudioComponentDescription& have) {
    auto fits = [](std::uint32_t want, std::uint32_t is) { return want == 0 || want == is; };
    return fits(wanted.componentType, have.componentType) &&
           fits(wanted.componentSubType, have.componentSubType) &&
           fits(wanted.componentManufacturer, have.componentManufacturer);
}

template <typename Unit>
std::unique_ptr<RegisteredComponent> component(std::uint32_t type, std::uint32_t subtype) {
    return std::make_unique<RegisteredComponent>(RegisteredComponent{
        {type, subtype, fourCC("appl"), 0, 0}, [] { return std::make_unique<Unit>(); }});
}

}  // namespace

AudioComponentRegistry& AudioComponentRegistry::shared() {
    static AudioComponentRegistry registry;
    return registry;
}

AudioComponentRegistry::AudioComponentRegistry() {
    m_components.push_back(component<HardwareIO>(fourCC("auou"), fourCC("rioc")));
    m_components.push_back(component<MultichannelMixer>(fourCC("aumx"), fourCC("mcmx")));
    m_components.push_back(component<SpatialMixer>(fourCC("aumx"), fourCC("3dem")));
    m_components.push_back(component<FormatConverter>(fourCC("aufc"), fourCC("conv")));
    m_components.push_back(component<Equaliser>(fourCC("aufx"), fourCC("ipeq")));
}

AudioComponent AudioComponentRegistry::add(RegisteredComponent component) {
    std::lock_guard guard(m_mutex);
    auto owned = std::make_unique<RegisteredComponent>(std::move(component));
    return m_components.insert(m_components.begin(), std::move(owned))->get();
}

void AudioComponentRegistry::remove(AudioComponent component) {
    std::lock_guard guard(m_mutex);
    auto found = std::ranges::find(m_components, component, [](auto& c) { return c.get(); });
    if (found == m_components.end())
        return;
    m_removed.push_back(std::move(*found));
    m_components.erase(found);
}

AudioComponent AudioComponentRegistry::findNext(AudioComponent after,
                                                const AudioComponentDescription& wanted) const {
    std::lock_guard guard(m_mutex);
    auto next = m_components.begin();
    if (after) {
        next = std::ranges::find(m_components, after, [](auto& c) { return c.get(); });
        if (next != m_components.end())
            ++next;
    }
    next = std::find_if(next, m_components.end(),
                        [&](auto& c) { return matches(wanted, c->description); });
    return next == m_components.end() ? nullptr : next->get();
}

AudioComponent AudioComponentFindNext(AudioComponent after,
                                      const AudioComponentDescription* wanted) {
    return wanted ? AudioComponentRegistry::shared().findNext(after, *wanted) : nullptr;
}

OSStatus AudioComponentGetDescription(AudioComponent component, AudioComponentDescription* out) {
    if (!component || !out)
        return kAudio_ParamError;
    *out = component->description;
    return noErr;
}

OSStatus AudioComponentInstanceNew(AudioComponent component, AudioUnit* out) {
    if (!out)
        return kAudio_ParamError;
    *out = nullptr;
    if (!component)
        return kAudio_ParamError;
    *out = component->make().release();
    return *out ? noErr : kAudioUnitErr_FailedInitialization;
}

OSStatus AudioComponentInstanceDispose(AudioUnit unit) {
    if (!unit)
        return kAudio_ParamError;
    delete unit;
    return noErr;
}
