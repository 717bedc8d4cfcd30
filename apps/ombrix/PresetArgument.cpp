#include "PresetArgument.h"

#include <filesystem>
#include <vector>

#include "folders/Folders.h"
#include "log/Log.h"
#include "parameters/PresetLookup.h"
#include "text/CNumber.h"
#include "wavechoice/WaveChoice.h"

namespace {

std::optional<Preset> presetNamed(const std::string& name) {
    const auto folder = Folders::data();
    std::vector<std::string> told;
    const auto preset =
        PresetLookup::find(name, folder ? (*folder / "presets.plist").string() : "",
                           WaveChoice::resource("default-presets.plist").value_or(""), told);
    for (const std::string& line : told)
        tellUser("%s", line.c_str());
    return preset;
}

}  // namespace

PresetArgument PresetArgument::find(const std::string& choice, std::string& error) {
    std::error_code ignored;
    if (std::filesystem::exists(choice, ignored) && !std::filesystem::is_directory(choice, ignored))
        return {readPresetFile(choice, error)};
    PresetArgument chosen{presetNamed(choice), true};
    if (!chosen.preset)
        error = "--preset " + oneLine(choice) +
                ": no such file, nor a preset of that name; \"ombrix presets\" lists them";
    return chosen;
}

std::string storedSoundPath(const Preset& preset) {
    const auto path = Folders::data()
                          ? WaveChoice::findWavePath(*preset.wave)
                          : WaveChoice::resource(WaveChoice::plainWaveName(*preset.wave));
    if (!path)
        tellUser("preset \"%s\": its sound \"%s\" is not there; the default sound is used",
                 preset.name.c_str(), preset.wave->c_str());
    return path.value_or(WaveChoice::defaultSoundFile());
}
