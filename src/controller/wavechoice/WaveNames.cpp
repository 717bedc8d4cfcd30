#include "wavechoice/WaveNames.h"

#include <array>
#include <filesystem>
#include <string_view>

#include "parameters/PresetNames.h"

bool WaveNames::isStorable(const std::string& plainName) {
    constexpr std::array<std::string_view, 3> kOurs{".", "presets.plist",
                                                    "-temporary-audio-recording-"};
    for (const std::string_view ours : kOurs) {
        if (plainName.starts_with(ours))
            return false;
    }
    return PresetNames::fileFault(plainName).empty();
}

std::string WaveNames::numbered(const std::string& plainName, int number) {
    const std::filesystem::path path(plainName);
    return path.stem().string() + ' ' + std::to_string(number) + path.extension().string();
}
