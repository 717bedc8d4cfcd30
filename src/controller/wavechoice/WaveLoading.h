#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "wavechoice/WaveChoice.h"

/// What a screen hears of sounds on their way. [main]
class WaveLoadingDelegate {
  public:
    virtual ~WaveLoadingDelegate() = default;
    /// The sound on its way is the one in use now.
    virtual void waveArrived() {}
    /// One is on its way, or none any more.
    virtual void loadingBeganOrEnded() {}
    /// One line for the user.
    virtual void loadingTold(const std::string& /*line*/) {}
};

/// Chooses sounds without keeping anyone waiting: a file is read on a thread of its own, and name,
/// view and voices change when that has succeeded. Of overlapping choices the last wins, and one
/// that fails changes nothing. [main]
class WaveLoading {
  public:
    /// Hears whether the sound is in use now; false when it failed, was cancelled, or another was
    /// taken into use meanwhile.
    using Then = std::function<void(bool arrived)>;

    explicit WaveLoading(WaveChoice& waves);
    /// What is under way is given up; a file that hangs is left behind.
    ~WaveLoading();
    WaveLoading(const WaveLoading&) = delete;
    WaveLoading& operator=(const WaveLoading&) = delete;

    /// Not retained; null for none.
    void setDelegate(WaveLoadingDelegate* delegate);

    /// Begins to load a file; a missing one falls back to the default sound, once. The sound in use
    /// is used anew at once. A choice that is still under way is given up and hears nothing.
    void setWaveTo(const std::string& path, Then then);
    /// The same for a file from anywhere: the sound is also copied into the data folder, where
    /// presets look for it. Nothing there is replaced, and a file that is no sound leaves nothing.
    void takeIn(const std::string& path, Then then);
    /// Gives up what is under way.
    void cancel();

    bool loading() const { return m_wanted != nullptr; }
    /// File name of what is under way; empty for none.
    std::string filename() const;
    /// 0 to 1.
    float progress() const;

  private:
    struct Job;

    void begin(const std::string& path, bool isForeign, Then then);
    void startWanted();
    void ended(Job& job);
    void settle(Job& job, bool arrived);
    bool use(Job& job);
    void fallBack(const std::string& failed);
    void giveUp();

    WaveChoice& m_waves;
    WaveLoadingDelegate* m_delegate;
    std::shared_ptr<Job> m_wanted;  // null: nothing is under way
    std::vector<std::shared_ptr<Job>> m_running;
};
