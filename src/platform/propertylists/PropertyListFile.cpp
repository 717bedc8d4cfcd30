#include "propertylists/PropertyList.h"
#include "storage/WholeFile.h"

std::optional<PropertyListValue> PropertyList::readFile(const std::string& path,
                                                        std::string& error) {
    const auto bytes = readWholeFile(path, kMaximumBytes, error);
    if (!bytes)
        return std::nullopt;
    auto value = parse(*bytes, error);
    if (!value)
        error = path + ": " + error;
    return value;
}

bool PropertyList::writeFile(const std::string& path, const PropertyListValue& value,
                             std::string& error) {
    const auto xml = toXml(value, error);
    if (!xml) {
        error = path + ": cannot write: " + error;
        return false;
    }
    return writeWholeFile(path, {reinterpret_cast<const std::uint8_t*>(xml->data()), xml->size()},
                          error);
}
