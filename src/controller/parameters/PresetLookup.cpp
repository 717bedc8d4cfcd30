#include "parameters/PresetLookup.h"

#include "parameters/PresetRepair.h"

namespace {

class Lookup {
  public:
    Lookup(const std::string& name, std::vector<std::string>& told) : m_name(name), m_told(told) {}

    /// False when the store is there and cannot be read.
    bool lookInto(const std::string& path) {
        const PresetFile file = PresetFile::read(path);
        const bool isRead = file.state == PresetFile::State::read;
        if (isRead)
            take(path, file);
        else if (file.state != PresetFile::State::missing)
            m_told.push_back(file.error);
        return isRead || file.state == PresetFile::State::missing;
    }

    const std::optional<Preset>& found() const { return m_found; }

  private:
    void take(const std::string& path, const PresetFile& file) {
        const Preset* preset = file.list.find(m_name);
        if (!preset)
            return;
        m_found = *preset;
        for (const std::string& repair : file.repairs) {
            if (repair.starts_with(subjectOf(preset->name)))
                m_told.push_back(path + ": " + repair);
        }
    }

    const std::string& m_name;
    std::vector<std::string>& m_told;
    std::optional<Preset> m_found;
};

}  // namespace

std::optional<Preset> PresetLookup::find(const std::string& name, const std::string& store,
                                         const std::string& shipped,
                                         std::vector<std::string>& told) {
    Lookup lookup(name, told);
    if (!store.empty() && !lookup.lookInto(store))
        lookup.lookInto(store + ".bak");
    if (!lookup.found() && !shipped.empty())
        lookup.lookInto(shipped);
    return lookup.found();
}
