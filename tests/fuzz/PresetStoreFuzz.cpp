// Any bytes as a preset store: refused with one line, or presets that can be used as they are. What
// is written of them is read back as the same, with nothing left to repair.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "parameters/PresetList.h"
#include "parameters/PresetNames.h"
#include "propertylists/PropertyList.h"

namespace {

using Lines = std::vector<std::string>;

void check(bool holds) {
    if (!holds)
        std::abort();
}

void checkLine(const std::string& line) {
    check(!line.empty() && line.find('\n') == std::string::npos);
}

void checkPreset(const std::string& key, const Preset& preset) {
    check(PresetNames::fault(preset.name).empty() && PresetNames::keyOf(preset.name) == key);
    check(!preset.wave || PresetNames::waveFault(*preset.wave).empty());
    check(preset.grainMotion >= 0 && preset.grainMotion <= 6);
    for (const Parameter& parameter : kParameters) {
        const float number = preset.number(parameter.id);
        if (parameter.kind == ParameterKind::number)
            check(number == 0 || parameter.stored.contains(number));
    }
}

std::optional<PresetList> listOf(std::span<const std::uint8_t> xml, Lines& repairs,
                                 std::string& error) {
    const auto value = PropertyList::parse(xml, error, PropertyList::Malformed::asText);
    return value ? PresetList::fromPropertyList(*value, repairs, error) : std::nullopt;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Lines repairs;
    std::string error;
    const auto list = listOf({data, size}, repairs, error);
    std::for_each(repairs.begin(), repairs.end(), checkLine);
    if (!list) {
        checkLine(error);
        return 0;
    }
    for (const auto& [key, preset] : list->presets)
        checkPreset(key, preset);
    const auto xml = PropertyList::toXml(list->toPropertyList(), error);
    if (!xml) {
        checkLine(error);
        return 0;
    }
    repairs.clear();
    const auto again =
        listOf({reinterpret_cast<const std::uint8_t*>(xml->data()), xml->size()}, repairs, error);
    check(again && repairs.empty() && again->presets.size() == list->presets.size());
    check(PropertyList::toXml(again->toPropertyList(), error) == xml);
    return 0;
}
