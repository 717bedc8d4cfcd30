#pragma once

#include <string>
#include <utility>
#include <vector>

#include "graph/VornComponentUnit.h"

/// The platform's equaliser, set by factory preset: a number and a name. [control]
class VorniPodEQUnit : public VornComponentUnit {
  public:
    using Preset = std::pair<std::int32_t, std::string>;

    VorniPodEQUnit();
    std::vector<Preset> presets() const;
    Preset currentPreset() const;
    void setCurrentPreset(const Preset& preset);
};
