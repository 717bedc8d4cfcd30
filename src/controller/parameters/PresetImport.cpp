#include "parameters/PresetImport.h"

#include <algorithm>
#include <filesystem>

#include "parameters/PresetBundle.h"
#include "propertylists/PropertyList.h"
#include "text/CNumber.h"
#include "wavechoice/ArrivingWave.h"
#include "wavechoice/WaveChoice.h"
#include "wavechoice/WaveNames.h"

namespace {

PresetImport::Result refused(const std::string& error) {
    return {{}, error, true};
}

PresetImport::Result failed(const std::string& error) {
    return {{}, error, false};
}

/// A store maps names to presets; a preset holds no dictionaries.
bool isStore(const PropertyListValue& value) {
    const auto* entries = value.dictionary();
    return entries && !entries->empty() &&
           std::all_of(entries->begin(), entries->end(),
                       [](const auto& entry) { return entry.second.dictionary() != nullptr; });
}

}  // namespace

PresetImport::Result PresetImport::take(const std::string& path) {
    return PresetBundle::isBundle(path) ? takeBundle(path) : takeList(path);
}

std::optional<Preset> PresetImport::read(const PropertyListValue::Dictionary& value,
                                         const std::string& path, std::string& error) {
    auto preset = Preset::fromPropertyList(value, error);
    if (preset && preset->wave &&
        !WaveNames::isStorable(WaveChoice::plainWaveName(*preset->wave))) {
        error = "the sound's name " + inQuotes(*preset->wave) + " is not allowed";
        preset.reset();
    }
    if (!preset) {
        error = path + ": " + error;
        return preset;
    }
    preset->isProtected = false;
    preset->name = PresetStore::trimmed(preset->name);
    if (preset->name.empty())
        preset->name = std::filesystem::path(path).stem().string();
    return preset;
}

PresetImport::Result PresetImport::takeBundle(const std::string& path) {
    std::string error;
    const auto bundle = PresetBundle::open(path, error);
    if (!bundle)
        return refused(error);
    auto preset = read(bundle->preset(), path, error);
    if (!preset)
        return refused(error);
    const std::string plain = preset->wave ? WaveChoice::plainWaveName(*preset->wave) : "";
    if (plain.empty() || !bundle->hasSound(plain))
        return add({std::move(*preset)});

    ArrivingWave wave(plain);
    const auto sink = [&](std::span<const std::uint8_t> part) { return wave.write(part); };
    if (!bundle->unpackSound(plain, sink, error))
        return wave.writeError().empty() ? refused(error) : failed(wave.writeError());
    std::string notice;
    if (!wave.check(error, notice))
        return refused(path + ": " + error);
    if (!notice.empty())
        m_tell(path + ": " + notice);
    const std::string name = wave.settle();
    if (name.empty())
        return failed(wave.writeError());
    if (name != plain) {
        m_tell(path + ": there is another " + inQuotes(plain) + "; its sound is now " +
               inQuotes(name));
        preset->wave = name;
    }
    Result result = add({std::move(*preset)});
    if (!result.error.empty())
        wave.withdraw();
    return result;
}

PresetImport::Result PresetImport::takeList(const std::string& path) {
    std::string error;
    const auto list = PropertyList::readFile(path, error);
    if (!list)
        return refused(error);
    std::vector<Preset> presets;
    const auto take = [&](const PropertyListValue& value) {
        auto preset = read(*value.dictionary(), path, error);
        if (preset)
            presets.push_back(std::move(*preset));
        return preset.has_value();
    };
    if (!list->dictionary())
        return refused(path + ": a preset must be a dictionary");
    if (!isStore(*list))
        return take(*list) ? add(std::move(presets)) : refused(error);
    for (const auto& [key, value] : *list->dictionary()) {
        if (!take(value))
            return refused(error);
    }
    return add(std::move(presets));
}

PresetImport::Result PresetImport::add(std::vector<Preset> presets) {
    Result result;
    for (Preset& preset : presets) {
        giveFreeName(preset);
        if (preset.wave && !WaveChoice::findWavePath(*preset.wave))
            m_tell(inQuotes(preset.name) + " plays " + inQuotes(*preset.wave) +
                   ", which is not here; the default sound takes its place");
        if (std::string error = m_store.save(preset); !error.empty()) {
            result.error = error;
            return result;
        }
        result.names.push_back(preset.name);
    }
    return result;
}

void PresetImport::giveFreeName(Preset& preset) {
    const int there = m_store.hasPresetWithName(preset.name);
    if (there == 0 || (there > 0 && m_replace))
        return;
    const std::string own = preset.name;
    for (int number = 2; m_store.hasPresetWithName(preset.name) != 0; ++number)
        preset.name = own + ' ' + std::to_string(number);
    m_tell("there is a preset " + inQuotes(own) + " already; this one is now " +
           inQuotes(preset.name));
}
