#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <vector>

class VornWave2;

/// Which wave stands for which file path, so that a path is loaded once in the process. Does not
/// keep waves alive: a wave takes its entry away when it goes. [any thread but render]
class VornWaveDatabase {
  public:
    static VornWaveDatabase& sharedInstance();

    /// Replaces an earlier entry; an empty path is ignored.
    void registerWave(const std::shared_ptr<VornWave2>& wave, const std::string& path);
    /// Registers `wave` unless another lives under that path; returns the one that holds it now.
    std::shared_ptr<VornWave2> registerUnlessTaken(const std::shared_ptr<VornWave2>& wave,
                                                   const std::string& path);
    /// Takes the entry away, whosever it is.
    void unregisterWaveForPath(const std::string& path);
    /// Takes the entry away if it is this wave's own. By identity: called while the wave goes.
    void unregisterWaveForPath(const VornWave2* wave, const std::string& path);
    /// Null when there is none.
    std::shared_ptr<VornWave2> lookupWaveForPath(const std::string& path);
    std::vector<std::shared_ptr<VornWave2>> waves();

    /// Logs every entry.
    void debugPrint();
    /// Says for every wave whether its file name is among `names`, and maps out those of others,
    /// which leaves them as they are.
    void unmapWavesExcept(const std::set<std::string>& names);

  private:
    struct Entry {
        const VornWave2* identity = nullptr;
        std::weak_ptr<VornWave2> wave;
    };
    VornWaveDatabase() = default;
    /// Of the waves that live, by path.
    std::map<std::string, std::shared_ptr<VornWave2>> entries();

    std::mutex m_mutex;
    std::map<std::string, Entry> m_database;
};
