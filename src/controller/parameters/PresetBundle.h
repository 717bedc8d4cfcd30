#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>

#include "archives/ZipReader.h"
#include "parameters/Preset.h"

/// A preset and its sound in one file, "NAME.ombrix": a zip archive that holds the preset as
/// "preset.plist" and, if the user made the sound, that under its plain file name, in whatever
/// format it is. Entries that are neither are for programs newer than this one. [main]
class PresetBundle {
  public:
    static constexpr const char* kExtension = ".ombrix";
    static constexpr std::size_t kMostEntries = 64;
    static constexpr std::uint64_t kLargestSound = std::uint64_t(256) << 20;  // bytes

    /// Writes a preset as a bundle; a file at `path` is only replaced if asked to, in one step.
    /// Answers one line that says what failed, empty when it is done and on disk.
    [[nodiscard]] static std::string write(const Preset& preset, const std::string& path,
                                           bool replace);

    /// Whether the file is to be read as a bundle, by its first bytes or its name.
    static bool isBundle(const std::string& path);
    /// On failure `error` is one line that begins with the path.
    static std::unique_ptr<PresetBundle> open(const std::string& path, std::string& error);

    /// What "preset.plist" holds.
    const PropertyListValue::Dictionary& preset() const { return m_preset; }
    bool hasSound(const std::string& plainName) const { return m_zip->has(plainName); }
    /// As ZipReader::unpack.
    bool unpackSound(const std::string& plainName, const ZipReader::Sink& sink,
                     std::string& error) {
        return m_zip->unpack(plainName, kLargestSound, sink, error);
    }

    /// A file name for a preset of this name: what other systems do not allow in one becomes "_".
    static std::string filenameFor(const std::string& presetName);

  private:
    PresetBundle() = default;

    std::unique_ptr<ZipReader> m_zip;
    PropertyListValue::Dictionary m_preset;
};
