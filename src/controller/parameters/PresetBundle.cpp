#include "parameters/PresetBundle.h"

#include <filesystem>
#include <fstream>

#include "archives/ZipWriter.h"
#include "propertylists/PropertyList.h"
#include "storage/AsideFile.h"
#include "text/CNumber.h"
#include "text/UnicodeText.h"
#include "wavechoice/WaveChoice.h"
#include "wavechoice/WaveNames.h"

namespace {

constexpr const char* kPresetEntry = "preset.plist";
constexpr ZipLimits kLimits{PresetBundle::kLargestSound + (std::uint64_t(8) << 20),
                            PresetBundle::kMostEntries,
                            PresetBundle::kLargestSound + PropertyList::kMaximumBytes};

/// Adds the sound unless it is one that every copy of the program has.
std::string addSound(const std::string& wave, ZipWriter& zip) {
    const std::string name = WaveChoice::plainWaveName(wave);
    const auto path = WaveChoice::findWavePath(wave);
    if (!path)
        return "its sound " + inQuotes(name) + " is missing";
    if (*path != WaveChoice::dataFile(name))
        return "";
    if (!WaveNames::isStorable(name) || name == kPresetEntry)
        return "its sound " + inQuotes(name) + " has a name that cannot travel; rename the file";
    return zip.addFile(name, *path, PresetBundle::kLargestSound) ? "" : zip.error();
}

std::string put(AsideFile& file, bool replace) {
    if (replace)
        return file.replaceTarget() ? "" : file.error();
    switch (file.putNew(file.target())) {
        case AsideFile::Put::done:
            return "";
        case AsideFile::Put::taken:
            return file.target() + " exists already; --force replaces it";
        default:
            return file.error();
    }
}

}  // namespace

std::string PresetBundle::write(const Preset& preset, const std::string& path, bool replace) {
    Preset travelling = preset;
    travelling.isProtected = false;
    std::string error;
    auto xml = PropertyList::toXml(travelling.toPropertyList(), error);
    if (!xml)
        return "cannot export " + inQuotes(preset.name) + ": " + error;
    ZipWriter zip;
    zip.add(kPresetEntry, std::move(*xml));
    if (preset.wave)
        error = addSound(*preset.wave, zip);
    if (!error.empty())
        return "cannot export " + inQuotes(preset.name) + ": " + error;
    AsideFile file(path);
    return zip.finish(file) ? put(file, replace) : zip.error();
}

bool PresetBundle::isBundle(const std::string& path) {
    std::error_code failed;
    if (!std::filesystem::is_regular_file(path, failed))
        return false;  // a pipe is not waited for
    char first[2] = {};
    std::ifstream(path, std::ios::binary).read(first, sizeof first);
    return (first[0] == 'P' && first[1] == 'K') || path.ends_with(kExtension);
}

std::unique_ptr<PresetBundle> PresetBundle::open(const std::string& path, std::string& error) {
    std::unique_ptr<PresetBundle> bundle(new PresetBundle);
    bundle->m_zip = ZipReader::open(path, kLimits, error);
    if (!bundle->m_zip)
        return nullptr;
    const auto xml = bundle->m_zip->unpack(kPresetEntry, PropertyList::kMaximumBytes, error);
    if (!xml)
        return nullptr;
    const auto list = PropertyList::parse(*xml, error, PropertyList::Malformed::asText);
    if (list && list->dictionary())
        bundle->m_preset = *list->dictionary();
    else
        error =
            path + ": " + kPresetEntry + ": " + (list ? "a preset must be a dictionary" : error);
    return error.empty() ? std::move(bundle) : nullptr;
}

std::string PresetBundle::filenameFor(const std::string& presetName) {
    constexpr std::size_t kMostBytes = 200;  // leaves room for a name aside
    std::string name(UnicodeText::cut(presetName, kMostBytes));
    for (char& c : name) {
        if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F ||
            std::string_view("/\\:*?\"<>|").find(c) != std::string_view::npos)
            c = '_';
    }
    if (name.empty() || name[0] == '.' || name[0] == '-')
        name.insert(name.begin(), '_');
    return name + kExtension;
}
