#include "SoundArgument.h"

#include <filesystem>

#include "folders/Folders.h"
#include "text/CNumber.h"
#include "wavechoice/WaveChoice.h"

std::optional<std::string> soundPath(const std::string& sound) {
    std::error_code ignored;
    if (std::filesystem::exists(sound, ignored))
        return sound;
    const std::string name = WaveChoice::plainWaveName(sound);
    if (name.empty() || name.find('/') != std::string::npos)
        return std::nullopt;
    for (const std::string& file : {name, name + ".wav"}) {
        if (const auto builtIn = WaveChoice::resource(file))
            return builtIn;
        const auto folder = Folders::data();
        if (folder && std::filesystem::exists(*folder / file, ignored))
            return (*folder / file).string();
    }
    return std::nullopt;
}

std::string noSuchSound(const std::string& sound) {
    return oneLine(sound) + ": no such sound file, nor a sound of that name";
}
