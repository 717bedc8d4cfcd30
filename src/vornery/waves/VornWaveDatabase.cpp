#include "VornWaveDatabase.h"

#include "VornWave2.h"
#include "log/Log.h"

VornWaveDatabase& VornWaveDatabase::sharedInstance() {
    // Never destroyed: a background load may end after main has returned.
    static auto* instance = new VornWaveDatabase;
    return *instance;
}

void VornWaveDatabase::registerWave(const std::shared_ptr<VornWave2>& wave,
                                    const std::string& path) {
    Log::line("Register %s", path.c_str());
    if (path.empty())
        return;
    std::lock_guard guard(m_mutex);
    m_database[path] = {wave.get(), wave};
}

std::shared_ptr<VornWave2> VornWaveDatabase::registerUnlessTaken(
    const std::shared_ptr<VornWave2>& wave, const std::string& path) {
    std::shared_ptr<VornWave2> holder;
    {
        std::lock_guard guard(m_mutex);
        Entry& entry = m_database[path];
        holder = entry.wave.lock();
        if (!holder)
            entry = {wave.get(), wave};
    }
    if (holder)
        return holder;
    Log::line("Register %s", path.c_str());
    return wave;
}

void VornWaveDatabase::unregisterWaveForPath(const std::string& path) {
    Log::line("Unregister %s", path.c_str());
    std::lock_guard guard(m_mutex);
    m_database.erase(path);
}

void VornWaveDatabase::unregisterWaveForPath(const VornWave2* wave, const std::string& path) {
    Log::line("Unregister %s", path.c_str());
    std::lock_guard guard(m_mutex);
    const auto found = m_database.find(path);
    if (found != m_database.end() && found->second.identity == wave)
        m_database.erase(found);
}

std::shared_ptr<VornWave2> VornWaveDatabase::lookupWaveForPath(const std::string& path) {
    Log::line("Lookup %s", path.c_str());
    std::lock_guard guard(m_mutex);
    const auto found = m_database.find(path);
    return found == m_database.end() ? nullptr : found->second.wave.lock();
}

std::map<std::string, std::shared_ptr<VornWave2>> VornWaveDatabase::entries() {
    std::map<std::string, std::shared_ptr<VornWave2>> living;
    std::lock_guard guard(m_mutex);
    for (const auto& [path, entry] : m_database)
        if (auto wave = entry.wave.lock())
            living.emplace(path, std::move(wave));
    return living;
}

std::vector<std::shared_ptr<VornWave2>> VornWaveDatabase::waves() {
    std::vector<std::shared_ptr<VornWave2>> all;
    for (auto& [path, wave] : entries())
        all.push_back(wave);
    return all;
}

void VornWaveDatabase::debugPrint() {
    for (const auto& [path, wave] : entries())
        Log::line("%s -> %p", path.c_str(), static_cast<void*>(wave.get()));
}

void VornWaveDatabase::unmapWavesExcept(const std::set<std::string>& names) {
    for (const auto& wave : waves()) {
        const bool kept = names.contains(wave->filename());
        Log::line("%s %p [%s]", kept ? "Keeping" : "Unmapping", static_cast<void*>(wave.get()),
                  wave->filename().c_str());
        if (!kept)
            wave->mapOut();
    }
}
