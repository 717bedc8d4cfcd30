#include "propertylists/PropertyListValue.h"

#include <array>

std::string_view PropertyListValue::typeName() const {
    static constexpr std::array<std::string_view, 8> kNames = {
        "dictionary", "array", "string", "integer", "real", "boolean", "date", "data"};
    return kNames[m_value.index()];
}
