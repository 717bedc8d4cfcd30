#include "parameters/PresetImport.h"

#include <algorithm>
#include <filesystem>

#include "parameters/PresetBundle.h"
#include "parameters/PresetNames.h"
#include "parameters/PresetRepair.h"
#include "propertylists/PropertyList.h"
#include "storage/WholeFile.h"
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

constexpr const char* kNoPreset = "holds no preset to take in";

using Dictionary = PropertyListValue::Dictionary;

/// Whether anything in it is a preset's own; a store maps names to dictionaries.
bool isPreset(const Dictionary& entries) {
    return std::any_of(entries.begin(), entries.end(), [](const auto& entry) {
        const auto& [key, value] = entry;
        return !value.dictionary() && (key == "name" || key == "wave" || parameterWithKey(key));
    });
}

bool isProtected(const Dictionary& preset) {
    const auto found = preset.find("protected");
    return found != preset.end() && found->second == PropertyListValue(true);
}

/// What a sound is called is refused where everything else is repaired: it becomes a file's name.
std::string waveFault(const Dictionary& preset) {
    const auto wave = preset.find("wave");
    const std::string* name = wave == preset.end() ? nullptr : wave->second.string();
    const std::string fault = name ? PresetNames::waveFault(*name) : "";
    return fault.empty() ? "" : "the sound's name " + inQuotes(*name) + " is " + fault;
}

std::string nameFrom(const std::string& path) {
    return std::filesystem::path(path).stem().string();
}

}  // namespace

PresetImport::Result PresetImport::take(const std::string& path) {
    return PresetBundle::isBundle(path) ? takeBundle(path) : takeList(path);
}

PresetImport::Result PresetImport::takeBundle(const std::string& path) {
    std::string error;
    const auto bundle = PresetBundle::open(path, error);
    if (!bundle)
        return refused(error);
    if (!isPreset(bundle->preset()))
        return refused(path + ": " + kNoPreset);
    if (const std::string fault = waveFault(bundle->preset()); !fault.empty())
        return refused(path + ": " + fault);
    std::vector<std::string> told;
    Preset preset = repairedPreset(bundle->preset(), nameFrom(path), told);
    const std::string plain = preset.wave ? WaveChoice::plainWaveName(*preset.wave) : "";
    if (plain.empty() || !bundle->hasSound(plain))
        return add(path, {std::move(preset)}, told);
    if (!WaveNames::isStorable(plain))
        return refused(path + ": no sound may have the name " + inQuotes(plain));

    ArrivingWave wave(plain);
    Result result = bring(wave, *bundle, path, told);
    if (!result.error.empty())
        return result;
    if (wave.name() != plain)
        preset.wave = wave.name();
    result = add(path, {std::move(preset)}, told);
    if (!result.error.empty())
        wave.withdraw();
    return result;
}

PresetImport::Result PresetImport::bring(ArrivingWave& wave, PresetBundle& bundle,
                                         const std::string& path, std::vector<std::string>& told) {
    const std::string name = wave.name();
    const auto sink = [&](std::span<const std::uint8_t> part) { return wave.write(part); };
    std::string error;
    const bool unpacked = bundle.unpackSound(name, sink, error);
    std::string notice;
    const bool plays = unpacked && wave.check(error, notice);
    if (!wave.writeError().empty())
        return failed(wave.writeError());
    if (!plays)
        return refused(unpacked ? path + ": " + error : error);
    if (!wave.settle())
        return failed(wave.writeError());
    if (!notice.empty())
        told.push_back(notice);
    if (wave.name() != name)
        told.push_back("there is another " + inQuotes(name) + "; the sound is now " +
                       inQuotes(wave.name()));
    return {};
}

PresetImport::Result PresetImport::takeList(const std::string& path) {
    std::string error;
    const auto bytes = readWholeFile(path, PropertyList::kMaximumBytes, error);
    if (!bytes)
        return refused(error);
    const auto list = PropertyList::parse(*bytes, error, PropertyList::Malformed::asText);
    if (!list || !list->dictionary())
        return refused(path + ": " + (list ? kNoPreset : error));
    const Dictionary& entries = *list->dictionary();
    const Dictionary arrivals =
        isPreset(entries) ? Dictionary{{nameFrom(path), entries}} : presetsOf(entries);
    if (arrivals.empty())
        return refused(path + ": " + kNoPreset);
    std::vector<std::string> told;
    std::vector<Preset> presets;
    for (const auto& [name, value] : arrivals) {
        if (const std::string fault = waveFault(*value.dictionary()); !fault.empty())
            return refused(path + ": " + subjectOf(name) + fault);
        presets.push_back(repairedPreset(*value.dictionary(), name, told));
    }
    return add(path, std::move(presets), told);
}

/// Without those that the programs of both users came with, which are here already.
PresetImport::Dictionary PresetImport::presetsOf(const Dictionary& store) const {
    Dictionary presets;
    for (const auto& [name, value] : store) {
        if (value.dictionary() &&
            !(isProtected(*value.dictionary()) && m_store.hasPresetWithName(name) < 0))
            presets.emplace(name, value);
    }
    return presets;
}

PresetImport::Result PresetImport::add(const std::string& path, std::vector<Preset> presets,
                                       const std::vector<std::string>& told) {
    for (Preset& preset : presets)
        preset.isProtected = false;
    const std::vector<Preset> before = presets;
    if (std::string error = m_store.add(presets, m_replace); !error.empty())
        return failed(error);
    for (const std::string& line : told)
        m_tell(path + ": " + line);
    Result result;
    for (std::size_t i = 0; i < presets.size(); ++i) {
        tellOf(path, presets[i], before[i].name);
        result.names.push_back(presets[i].name);
    }
    return result;
}

void PresetImport::tellOf(const std::string& path, const Preset& preset,
                          const std::string& nameBefore) {
    if (preset.name != nameBefore)
        m_tell(path + ": there is a preset " + inQuotes(nameBefore) + " already; this one is now " +
               inQuotes(preset.name));
    if (preset.wave && !WaveChoice::findWavePath(*preset.wave))
        m_tell(path + ": " + subjectOf(preset.name) + "its sound " + inQuotes(*preset.wave) +
               " is not here; the default sound takes its place");
}
