#pragma once

#include <memory>
#include <vector>

#include "audiounits/AudioComponent.h"

/// Names a kind of platform unit and holds the component that was found for it. [control]
class VornUnitDescription {
  public:
    /// Looks up the first component of that type, subtype and creator; null if none matches, which
    /// is no error here.
    VornUnitDescription(std::uint32_t type, std::uint32_t subtype, std::uint32_t creator);
    /// Of a component that is known already.
    explicit VornUnitDescription(AudioComponent component);

    static std::shared_ptr<VornUnitDescription> unitDescriptionWithType(std::uint32_t type,
                                                                        std::uint32_t subtype,
                                                                        std::uint32_t creator);
    static std::shared_ptr<VornUnitDescription> unitDescriptionForComponent(
        AudioComponent component);
    /// With the creator "appl", as all of the platform's own components have it.
    static std::shared_ptr<VornUnitDescription> appleUnitDescriptionWithType(std::uint32_t type,
                                                                             std::uint32_t subtype);
    /// Every match, first found first; empty if there is none.
    static std::vector<std::shared_ptr<VornUnitDescription>> unitDescriptionsMatchingType(
        std::uint32_t type, std::uint32_t subtype, std::uint32_t creator);

    AudioComponent component() const { return m_component; }
    const AudioComponentDescription* componentDescription() const {
        return m_componentDescription.get();
    }

  private:
    AudioComponent m_component = nullptr;
    std::unique_ptr<AudioComponentDescription> m_componentDescription;
};
