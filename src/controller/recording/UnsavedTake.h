#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "editing/EditWorker.h"
#include "runloop/RunLoop.h"
#include "startup/InstanceLock.h"
#include "storage/FileNames.h"
#include "wavechoice/WaveChoice.h"

/// Takes that have no name yet, as files in the data folder, so that a crash keeps them. A file
/// belongs to a place among the running instances, which its name tells: nobody touches one whose
/// place a living process holds, and a take that was left over is never written over. [main]
class UnsavedTake {
  public:
    /// Hears one line for the user. [main]
    using Told = std::function<void(const std::string& line)>;
    static constexpr double kPause = 1;  // second

    explicit UnsavedTake(InstanceLock& place) : m_place(place) {}
    ~UnsavedTake();
    UnsavedTake(const UnsavedTake&) = delete;
    UnsavedTake& operator=(const UnsavedTake&) = delete;

    /// Keeps a take; it replaces the one kept before, if that was not given a name. Answers one
    /// line when it failed, else nothing. A process without a place keeps nothing.
    [[nodiscard]] std::string store(const VornWaveSequence& take);
    /// The same for a sound that is being edited: written in the background once `kPause` has gone
    /// by without another, by `RunLoop`. `told` hears one line when that failed. What else is asked
    /// for meanwhile takes its place.
    void storeLater(std::shared_ptr<const VornWaveSequence> sound, Told told);
    /// Nothing is to be kept after all: removes the file in the background.
    void forgetLater();
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
    void later(std::function<void()> what);
    void writeLater(std::shared_ptr<const VornWaveSequence> sound, Told told);
    void tellOnce(const std::string& line, const Told& told);
    void stopWriting();

    InstanceLock& m_place;
    std::string m_path;
    std::weak_ptr<const VornWaveSequence> m_kept;  // what the file holds, if that is known
    RunLoop::Token m_waiting = 0;                  // 0: nothing is to be written
    std::string m_told;                            // why the last writing in the background failed
    EditWorker m_writer;
};
