#pragma once

#include <string>
#include <vector>

#include "startup/InstanceLock.h"
#include "storage/FileNames.h"
#include "wavechoice/WaveChoice.h"

/// Takes that have no name yet, as files in the data folder, so that a crash keeps them. A file
/// belongs to a place among the running instances, which its name tells: nobody touches one whose
/// place a living process holds, and a take that was left over is never written over. [main]
class UnsavedTake {
  public:
    explicit UnsavedTake(InstanceLock& place) : m_place(place) {}

    /// Keeps a take; it replaces the one kept before, if that was not given a name. Answers one
    /// line when it failed, else nothing. A process without a place keeps nothing.
    [[nodiscard]] std::string store(const VornWaveSequence& take);
    /// File of the take that this process keeps; empty when there is none.
    const std::string& path() const { return m_path; }
    /// Gives the kept take the name `path` in the data folder. Answers one line when it failed; the
    /// take is kept then.
    [[nodiscard]] std::string nameIt(const std::string& path, FileNames::Existing existing);
    /// The take was stored under a name, or is not wanted: removes its file.
    void forget();

    /// Files of takes that belong to no living process, this one's earlier life included.
    std::vector<std::string> leftOver();
    /// Makes a left-over take this process's own, to be loaded, named or forgotten. False, with one
    /// line in `error`, when another process was quicker or it is no sound.
    bool adopt(const std::string& path, std::string& error);

  private:
    std::string freePath() const;

    InstanceLock& m_place;
    std::string m_path;
};
