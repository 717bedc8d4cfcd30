#include "parameters/Preset.h"

#include "parameters/PresetNames.h"
#include "parameters/PresetValue.h"
#include "propertylists/PropertyList.h"
#include "text/CNumber.h"

namespace {

constexpr std::string_view kName = "name";
constexpr std::string_view kWave = "wave";
constexpr std::string_view kProtected = "protected";

std::string unknownKey(std::string_view key) {
    std::string line =
        '"' + oneLine(key) + "\" is not a preset key; the keys are " + std::string(kWave);
    for (const Parameter& parameter : kParameters)
        line += ", " + std::string(parameter.key);
    return line;
}

template <class T>
bool take(std::string_view key, const T* from, T& to, std::string& error) {
    if (from)
        to = *from;
    else
        error =
            std::string(key) + " must be " + (std::is_same_v<T, bool> ? "true or false" : "text");
    return from != nullptr;
}

/// What the text is in a property list: only numbers and booleans are told from text.
PropertyListValue valueOf(const std::string& text) {
    if (text == "true" || text == "false")
        return text == "true";
    if (const auto number = numberFromText(text))
        return *number;
    return text;
}

}  // namespace

float Preset::filterBass() const {
    const float stored = number(ParameterId::filterBass);
    return stored == 0 ? kDefaultFilterBass : stored;
}

bool Preset::setParameter(const Parameter& parameter, const PropertyListValue& value,
                          std::string& error) {
    const auto stored = presetValue(parameter, value, error);
    if (!stored)
        return false;
    if (parameter.kind == ParameterKind::flag)
        syncSpeed = *stored != 0;
    else if (parameter.kind == ParameterKind::choice)
        grainMotion = std::int32_t(*stored);
    else
        setNumber(parameter.id, *stored);
    return true;
}

bool Preset::setValue(std::string_view key, const PropertyListValue& value, std::string& error) {
    if (key == kName)
        return take(key, value.string(), name, error);
    if (key == kWave)
        return setWave(value, error);
    if (key == kProtected)
        return take(key, value.boolean(), isProtected, error);
    if (const Parameter* parameter = parameterWithKey(key))
        return setParameter(*parameter, value, error);
    error = unknownKey(key);
    return false;
}

bool Preset::setWave(const PropertyListValue& value, std::string& error) {
    std::string named;
    if (!take(kWave, value.string(), named, error))
        return false;
    const std::string fault = PresetNames::waveFault(named);
    if (fault.empty())
        wave = std::move(named);
    else
        error = "wave is \"" + oneLine(named) + "\", which is " + fault;
    return fault.empty();
}

std::optional<Preset> Preset::fromPropertyList(const PropertyListValue& value, std::string& error) {
    const auto* dictionary = value.dictionary();
    if (!dictionary) {
        error = "a preset must be a dictionary";
        return std::nullopt;
    }
    Preset preset;
    for (const auto& [key, entry] : *dictionary) {
        if (!preset.setValue(key, entry, error))
            return std::nullopt;
    }
    return preset;
}

PropertyListValue Preset::toPropertyList() const {
    PropertyListValue::Dictionary dictionary;
    for (const Parameter& parameter : kParameters) {
        if (parameter.kind == ParameterKind::number)
            dictionary.emplace(parameter.key, number(parameter.id));
    }
    dictionary.emplace(parameter(ParameterId::syncSpeed).key, syncSpeed);
    dictionary.emplace(parameter(ParameterId::grainMotion).key, grainMotion);
    dictionary.emplace(kName, name);
    if (wave)
        dictionary.emplace(kWave, *wave);
    if (isProtected)
        dictionary.emplace(kProtected, true);
    dictionary.insert(unknown.begin(), unknown.end());
    return dictionary;
}

bool Preset::set(std::string_view key, const std::string& text, std::string& error) {
    if (key == kName || key == kProtected) {
        error = std::string(key) + " cannot be set";
        return false;
    }
    return setValue(key, key == kWave ? PropertyListValue(text) : valueOf(text), error);
}

std::optional<Preset> readPresetFile(const std::string& path, std::string& error) {
    const auto list = PropertyList::readFile(path, error);
    if (!list)
        return std::nullopt;
    auto preset = Preset::fromPropertyList(*list, error);
    if (!preset)
        error = path + ": " + error;
    return preset;
}
