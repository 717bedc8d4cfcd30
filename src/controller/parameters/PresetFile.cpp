#include "parameters/PresetFile.h"

#include "propertylists/PropertyList.h"
#include "storage/WholeFile.h"

namespace {

PresetFile::State stateOf(ReadFault fault) {
    if (fault == ReadFault::missing)
        return PresetFile::State::missing;
    return fault == ReadFault::tooLarge ? PresetFile::State::broken
                                        : PresetFile::State::unavailable;
}

}  // namespace

PresetFile PresetFile::read(const std::string& path) {
    PresetFile file;
    ReadFault fault = ReadFault::none;
    const auto bytes = readWholeFile(path, PropertyList::kMaximumBytes, file.error, &fault);
    if (!bytes) {
        file.state = stateOf(fault);
        return file;
    }
    file.state = State::broken;
    std::string error;
    const auto value = PropertyList::parse(*bytes, error, PropertyList::Malformed::asText);
    auto list = value ? PresetList::fromPropertyList(*value, file.repairs, error) : std::nullopt;
    if (list) {
        file.state = State::read;
        file.list = std::move(*list);
    } else {
        file.repairs.clear();
        file.error = path + ": " + error;
    }
    return file;
}
