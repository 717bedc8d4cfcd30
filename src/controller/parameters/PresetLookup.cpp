#include "parameters/PresetLookup.h"

#include "parameters/PresetRepair.h"

namespace {

class Lookup {
  public:
    Lookup(const std::string& name, std::vector<std::string>& told) : m_name(name), m_told(told) {}

    /// Why the store, which is there, cannot be read; else nothing.
    std::string lookInto(const std::string& path) {
        const PresetFile file = PresetFile::read(path);
        if (file.state == PresetFile::State::read)
            take(path, file);
        return file.error.empty() || file.state == PresetFile::State::missing ? "" : file.error;
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
    const std::string fault = store.empty() ? "" : lookup.lookInto(store);
    if (!fault.empty()) {
        told.push_back(fault + "; its backup and the shipped presets are used instead");
        lookup.lookInto(store + ".bak");
    }
    if (!lookup.found() && !shipped.empty()) {
        if (const std::string broken = lookup.lookInto(shipped); !broken.empty())
            told.push_back(broken);
    }
    return lookup.found();
}
