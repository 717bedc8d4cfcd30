#pragma once

#include <string>
#include <vector>

#include "parameters/PresetStore.h"

class ArrivingWave;
class PresetBundle;

/// Presets from files that others made, into the store and the data folder. All of a file is
/// checked before anything is written; values that cannot be used are repaired, and nobody's preset
/// arrives protected. A file that fails changes nothing. [main]
class PresetImport {
  public:
    using Tell = PresetStore::Tell;

    struct Result {
        std::vector<std::string> names;  // under which the presets are now in the store
        std::string error;               // one line that names the file, or empty
        bool inputAtFault = false;       // else the error is that something could not be written
    };

    /// `replace`: a user's preset of the same name is replaced; else, and where it is a shipped
    /// one, the preset that arrives gets the first free of "NAME 2" and so on. `tell` hears of
    /// repairs and of names that were taken.
    PresetImport(PresetStore& store, bool replace, Tell tell)
        : m_store(store), m_replace(replace), m_tell(std::move(tell)) {}

    /// A bundle, or a property list that is one preset or a whole store of them.
    Result take(const std::string& path);

  private:
    using Dictionary = PropertyListValue::Dictionary;

    Result takeBundle(const std::string& path);
    Result takeList(const std::string& path);
    Dictionary presetsOf(const Dictionary& store) const;
    Result bring(ArrivingWave& wave, PresetBundle& bundle, const std::string& path,
                 std::vector<std::string>& told);
    Result add(const std::string& path, std::vector<Preset> presets,
               const std::vector<std::string>& told);
    void tellOf(const std::string& path, const Preset& preset, const std::string& nameBefore);

    PresetStore& m_store;
    bool m_replace;
    Tell m_tell;
};
