#include "parameters/PresetRepair.h"

#include "parameters/PresetNames.h"
#include "parameters/PresetValue.h"
#include "text/CNumber.h"

namespace {

class Repair {
  public:
    Repair(std::string_view fallbackName, std::vector<std::string>& repairs)
        : m_fallbackName(fallbackName), m_repairs(repairs) {}

    Preset preset(const PropertyListValue::Dictionary& dictionary) {
        const auto name = dictionary.find("name");
        takeName(name == dictionary.end() ? nullptr : &name->second);
        for (const auto& [key, value] : dictionary)
            take(key, value);
        return std::move(m_preset);
    }

  private:
    void say(const std::string& what) { m_repairs.push_back(subjectOf(m_preset.name) + what); }

    void takeName(const PropertyListValue* value) {
        const std::string* name = value ? value->string() : nullptr;
        const std::string fault = name ? PresetNames::fault(*name) : "missing or not text";
        m_preset.name = PresetNames::repaired(name ? *name : "");
        if (m_preset.name.empty())
            m_preset.name = PresetNames::repaired(m_fallbackName);
        if (!fault.empty() && value && !(name && PresetNames::trimmed(*name).empty()))
            say("a name that is " + fault + " was replaced by this one");
    }

    void take(const std::string& key, const PropertyListValue& value) {
        if (const Parameter* parameter = parameterWithKey(key))
            takeParameter(*parameter, value);
        else if (key == "wave")
            takeWave(value);
        else if (key == "protected")
            takeProtection(value);
        else if (key != "name")
            m_preset.unknown.emplace(key, value);
    }

    void takeParameter(const Parameter& parameter, const PropertyListValue& value) {
        std::string error;
        auto stored = presetValue(parameter, value, error);
        if (!stored) {
            stored = repairedValue(parameter, value);
            say(error + "; " + shownValue(parameter, *stored) + " is used");
        }
        if (parameter.kind == ParameterKind::flag)
            m_preset.syncSpeed = *stored != 0;
        else if (parameter.kind == ParameterKind::choice)
            m_preset.grainMotion = std::int32_t(*stored);
        else
            m_preset.setNumber(parameter.id, *stored);
    }

    void takeWave(const PropertyListValue& value) {
        const std::string* wave = value.string();
        const std::string fault = wave ? PresetNames::waveFault(*wave) : "not text";
        if (fault.empty())
            m_preset.wave = *wave;
        else
            say("wave " + (wave ? '"' + oneLine(*wave) + "\" " : std::string()) + "is " + fault +
                "; it is left out");
    }

    void takeProtection(const PropertyListValue& value) {
        if (const bool* flag = value.boolean())
            m_preset.isProtected = *flag;
        else
            say("protected must be true or false; false is used");
    }

    std::string_view m_fallbackName;
    std::vector<std::string>& m_repairs;
    Preset m_preset;
};

}  // namespace

Preset repairedPreset(const PropertyListValue::Dictionary& dictionary,
                      std::string_view fallbackName, std::vector<std::string>& repairs) {
    return Repair(fallbackName, repairs).preset(dictionary);
}

std::string subjectOf(std::string_view name) {
    return "preset \"" + oneLine(name) + "\": ";
}
