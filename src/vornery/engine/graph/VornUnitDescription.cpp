#include "graph/VornUnitDescription.h"

#include "log/Log.h"

VornUnitDescription::VornUnitDescription(std::uint32_t type, std::uint32_t subtype,
                                         std::uint32_t creator)
    : m_componentDescription(std::make_unique<AudioComponentDescription>()) {
    *m_componentDescription = {type, subtype, creator, 0, 0};
    m_component = AudioComponentFindNext(nullptr, m_componentDescription.get());
}

VornUnitDescription::VornUnitDescription(AudioComponent component)
    : m_component(component),
      m_componentDescription(std::make_unique<AudioComponentDescription>()) {
    Log::status(AudioComponentGetDescription(component, m_componentDescription.get()));
}

std::shared_ptr<VornUnitDescription> VornUnitDescription::unitDescriptionWithType(
    std::uint32_t type, std::uint32_t subtype, std::uint32_t creator) {
    return std::make_shared<VornUnitDescription>(type, subtype, creator);
}

std::shared_ptr<VornUnitDescription> VornUnitDescription::unitDescriptionForComponent(
    AudioComponent component) {
    return std::make_shared<VornUnitDescription>(component);
}

std::shared_ptr<VornUnitDescription> VornUnitDescription::appleUnitDescriptionWithType(
    std::uint32_t type, std::uint32_t subtype) {
    return unitDescriptionWithType(type, subtype, fourCC("appl"));
}

std::vector<std::shared_ptr<VornUnitDescription>> VornUnitDescription::unitDescriptionsMatchingType(
    std::uint32_t type, std::uint32_t subtype, std::uint32_t creator) {
    const AudioComponentDescription wanted{type, subtype, creator, 0, 0};
    std::vector<std::shared_ptr<VornUnitDescription>> matches;
    for (AudioComponent found = AudioComponentFindNext(nullptr, &wanted); found;
         found = AudioComponentFindNext(found, &wanted))
        matches.push_back(unitDescriptionForComponent(found));
    return matches;
}
