#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "parameters/Preset.h"

/// What a preset store holds: presets by the key of their name, and entries that are no presets (a
/// newer version's), which are kept. A plain value.
struct PresetList {
    static constexpr std::size_t kMostPresets = 10000;
    using Presets = std::map<std::string, Preset>;

    Presets presets;
    PropertyListValue::Dictionary others;

    /// From a store's dictionary; each preset is repaired by itself, with a line for each repair.
    /// One that does not stand under the key of its name moves there; where that is taken it is
    /// called by the key that it has, or else by its name and a number. Fails only for what is no
    /// dictionary and for more than kMostPresets, with one line.
    static std::optional<PresetList> fromPropertyList(const PropertyListValue& value,
                                                      std::vector<std::string>& repairs,
                                                      std::string& error);
    PropertyListValue toPropertyList() const;

    /// Null when there is none of this name, however it is written.
    const Preset* find(std::string_view name) const;
    /// Under the key of its name, which must have no fault.
    void put(Preset preset);
    /// What `other` has and this list has not.
    void addMissing(const PresetList& other);
};
