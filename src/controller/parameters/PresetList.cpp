#include "parameters/PresetList.h"

#include "parameters/PresetNames.h"
#include "parameters/PresetRepair.h"
#include "text/CNumber.h"

namespace {

/// Gives every preset of a store a key and a name that fit each other and no one else.
class Placing {
  public:
    Placing(PresetList& list, std::vector<std::string>& repairs)
        : m_list(list), m_repairs(repairs) {}

    /// Whether it stands where its name says.
    bool putIfInPlace(const std::string& key, Preset& preset) {
        if (preset.name.empty() || PresetNames::keyOf(preset.name) != key)
            return false;
        m_list.presets.emplace(key, std::move(preset));
        return true;
    }

    void putElsewhere(const std::string& key, Preset preset) {
        const std::string before = preset.name;
        preset.name = freeName(key, preset.name);
        if (preset.name != before || PresetNames::keyOf(key) != PresetNames::keyOf(before))
            m_repairs.push_back(subjectOf(preset.name) + "stood under the key \"" + oneLine(key) +
                                '"' + (preset.name == before ? "" : " with a name that is taken"));
        m_list.put(std::move(preset));
    }

  private:
    bool isFree(const std::string& name) const { return !name.empty() && !m_list.find(name); }

    std::string freeName(const std::string& key, const std::string& name) {
        if (isFree(name))
            return name;
        if (const std::string byKey = PresetNames::repaired(key); isFree(byKey))
            return byKey;
        const std::string base = name.empty() ? "Preset" : name;
        int& number = m_numbers[PresetNames::keyOf(base)];
        std::string numbered;
        do {
            const std::string tail = ' ' + std::to_string(++number + 1);
            numbered = PresetNames::repaired(base.substr(0, PresetNames::kLongest - 16)) + tail;
        } while (!isFree(numbered));
        return numbered;
    }

    PresetList& m_list;
    std::vector<std::string>& m_repairs;
    std::map<std::string, int> m_numbers;
};

}  // namespace

std::optional<PresetList> PresetList::fromPropertyList(const PropertyListValue& value,
                                                       std::vector<std::string>& repairs,
                                                       std::string& error) {
    const auto* dictionary = value.dictionary();
    if (!dictionary) {
        error = "a preset store must be a dictionary";
        return std::nullopt;
    }
    PresetList list;
    Placing placing(list, repairs);
    std::vector<std::pair<std::string, Preset>> elsewhere;
    for (const auto& [key, entry] : *dictionary) {
        if (!entry.dictionary()) {
            list.others.emplace(key, entry);
            continue;
        }
        Preset preset = repairedPreset(*entry.dictionary(), key, repairs);
        if (!placing.putIfInPlace(key, preset))
            elsewhere.emplace_back(key, std::move(preset));
        if (list.presets.size() + elsewhere.size() > kMostPresets) {
            error = "more than " + std::to_string(kMostPresets) + " presets";
            return std::nullopt;
        }
    }
    for (auto& [key, preset] : elsewhere)
        placing.putElsewhere(key, std::move(preset));
    return list;
}

PropertyListValue PresetList::toPropertyList() const {
    PropertyListValue::Dictionary dictionary = others;
    for (const auto& [key, preset] : presets)
        dictionary.insert_or_assign(key, preset.toPropertyList());
    return dictionary;
}

const Preset* PresetList::find(std::string_view name) const {
    const auto found = presets.find(PresetNames::keyOf(name));
    return found == presets.end() ? nullptr : &found->second;
}

void PresetList::put(Preset preset) {
    std::string key = PresetNames::keyOf(preset.name);
    presets.insert_or_assign(std::move(key), std::move(preset));
}

void PresetList::addMissing(const PresetList& other) {
    presets.insert(other.presets.begin(), other.presets.end());
    others.insert(other.others.begin(), other.others.end());
}
