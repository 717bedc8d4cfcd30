// Any bytes as a property list and as a preset: refused with one line, or read into what can be
// written and is then read back as the same.
#include <cstdint>
#include <cstdlib>
#include <string>

#include "parameters/Preset.h"
#include "propertylists/PropertyList.h"

namespace {

void check(bool holds) {
    if (!holds)
        std::abort();
}

void checkLine(const std::string& line) {
    check(!line.empty() && line.find('\n') == std::string::npos);
}

std::optional<PropertyListValue> parse(const std::string& xml, std::string& error) {
    return PropertyList::parse({reinterpret_cast<const std::uint8_t*>(xml.data()), xml.size()},
                               error);
}

/// Not-a-number equals nothing, so what is compared is what is written.
void checkRoundTrip(const PropertyListValue& value) {
    std::string error;
    const auto xml = PropertyList::toXml(value, error);
    if (!xml)
        return checkLine(error);
    const auto again = parse(*xml, error);
    check(again.has_value());
    check(PropertyList::toXml(*again, error) == xml);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string error;
    const auto value = PropertyList::parse({data, size}, error);
    if (!value) {
        checkLine(error);
        return 0;
    }
    checkRoundTrip(*value);
    const auto preset = Preset::fromPropertyList(*value, error);
    if (!preset) {
        checkLine(error);
        return 0;
    }
    check(Preset::fromPropertyList(preset->toPropertyList(), error) == preset);
    return 0;
}
