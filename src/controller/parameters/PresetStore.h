#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "parameters/Preset.h"

/// The user's presets, by lower-cased name: "presets.plist" in the data folder, at first the
/// shipped presets. Every change re-reads the file under a lock, so that two processes never lose
/// each other's presets, and replaces it in one step; the file before it is kept as
/// "presets.plist.bak". A file that cannot be read is set aside as "presets.plist.corrupt-DATE" and
/// the backup is used. Values that cannot be used are repaired. [main]
class PresetStore {
  public:
    static constexpr std::size_t kMostPresets = 10000;
    /// Hears one line for the user at a time: repairs, a store set aside.
    using Tell = std::function<void(const std::string& line)>;
    using Presets = std::map<std::string, Preset>;

    /// Reads the store at `path`, or `shipped` when there is none.
    PresetStore(std::string path, std::string shipped, Tell tell);

    /// By lower-cased name, in its order.
    const Presets& presets() const { return m_presets; }
    /// Null when there is none. White space around the name and upper case count for nothing.
    const Preset* find(const std::string& name) const;
    /// 0 none, 1 a user's preset, -1 a protected one.
    int hasPresetWithName(const std::string& name) const;

    /// Each answers one line that says what failed and why, empty when it is done and on disk.
    /// `save` replaces a preset of that name.
    [[nodiscard]] std::string save(const Preset& preset);
    [[nodiscard]] std::string rename(const std::string& from, const std::string& to);
    [[nodiscard]] std::string remove(const std::string& name);

    /// The key of a preset in the store: trimmed of white space and line ends, lower-cased.
    static std::string keyOf(const std::string& name);
    static std::string trimmed(const std::string& name);

  private:
    std::string m_path;
    std::string m_shipped;
    Tell m_tell;
    Presets m_presets;
};
