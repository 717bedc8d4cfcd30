#pragma once

#include <functional>
#include <set>
#include <string>

#include "parameters/PresetFile.h"

/// The user's presets, by lower-cased name: "presets.plist" in the data folder, at first the
/// shipped presets. Every change re-reads the file under a lock (".presets.lock"), so that two
/// processes never lose each other's presets, and replaces it in one step; the file before it is
/// kept as "presets.plist.bak". A file that holds no presets is set aside as
/// "presets.plist.corrupt-DATE" and the backup takes its place; one that cannot be opened is left
/// alone. Values that cannot be used are repaired. [main]
class PresetStore {
  public:
    static constexpr std::size_t kMostPresets = PresetList::kMostPresets;
    /// Hears one line for the user at a time: repairs, a store set aside.
    using Tell = std::function<void(const std::string& line)>;
    using Presets = PresetList::Presets;

    /// Reads the store at `path`, or `shipped` when there is none.
    PresetStore(std::string path, std::string shipped, Tell tell);

    /// By lower-cased name, in its order.
    const Presets& presets() const { return m_list.presets; }
    /// Null when there is none. White space around the name and upper case count for nothing. The
    /// answer lives until the next change.
    const Preset* find(const std::string& name) const { return m_list.find(name); }
    /// 0 none, 1 a user's preset, -1 a protected one.
    int hasPresetWithName(const std::string& name) const;

    /// Each answers one line that says what failed and why, empty when it is done and on disk.
    /// `save` replaces a preset of that name, a protected one too; only users' presets can be
    /// renamed or removed. Renaming onto another preset is refused.
    [[nodiscard]] std::string save(const Preset& preset);
    [[nodiscard]] std::string rename(const std::string& from, const std::string& to);
    [[nodiscard]] std::string remove(const std::string& name);

    /// Takes in presets from elsewhere, all of them or none. One of a name that is taken gets the
    /// first free of "NAME 2" and so on, unless it is to `replace` a user's preset of that name.
    /// Afterwards `presets` have the names that they got. Answers as `save` does.
    [[nodiscard]] std::string add(std::vector<Preset>& presets, bool replace);

  private:
    /// Changes the list, or answers why not.
    using Change = std::function<std::string(PresetList& list)>;

    void open();
    void openBeside(const std::string& error);
    void openShipped();
    std::string change(const Change& change);
    std::string changeUnderLock(const Change& change);
    /// Sets the broken file aside and makes `list` what takes its place; answers why it cannot.
    std::string recover(const std::string& fault, PresetList& list);
    std::string write(const PresetList& list, bool keepPrevious);
    std::string backup() const { return m_path + ".bak"; }
    void tellRepairs(const std::string& path, const std::vector<std::string>& repairs);

    std::string m_path;
    std::string m_shipped;
    Tell m_tell;
    PresetList m_list;
    std::set<std::string> m_told;  // repairs
};
