#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "VornSequencePlayer.h"
#include "VornSequenceScrubber.h"
#include "graph/Vornery.h"
#include "runloop/RunLoop.h"

/// Lets a sound be heard beside the instrument, played or scrubbed: a player and a scrubber on
/// buses 1 and 2 of the engine's mixer, which are made with the first audition. What the
/// instrument's own bus records never contains them. A sound of two channels is heard in stereo.
/// Stops the engine when it goes. Frames are counted at 44100 Hz. [main]
class Audition {
  public:
    using Sound = std::shared_ptr<WaveSequenceAccess>;

    /// How a sound is played.
    struct Playing {
        std::uint32_t from = 0;  // frame; past the end nothing is heard
        float gain = 1.f;        // linear
        bool looping = false;
    };

    /// A sound that is ready, or the one line that says why it is not.
    struct Loaded {
        Sound sound;         // null after an error
        std::string error;   // names file and reason
        std::string notice;  // ready, but something is amiss
    };

    Audition() = default;
    ~Audition();
    Audition(const Audition&) = delete;
    Audition& operator=(const Audition&) = delete;

    /// Reads a file with all its channels, on this thread. Built-in sounds are generated.
    static Loaded load(const std::string& path);

    /// Plays a sound at once.
    void play(Sound sound, const Playing& how);
    /// Plays a file as soon as it is loaded in the background, and tells how that went. What was
    /// asked for meanwhile replaces it, and nothing is told.
    void playFile(const std::string& path, const Playing& how,
                  std::function<void(const Loaded&)> told);
    /// Makes a sound the one that is scrubbed; nothing is heard yet.
    void scrub(Sound sound, float gain = 0.5f);
    /// A grain that is at its loudest at this frame.
    void scrubTo(std::int32_t frame) { m_scrubber.scrubTo(frame); }
    /// Ends all that is heard, and forgets a file that is being loaded.
    void stop();
    /// The same, and keeps no sound any longer than a render may read it.
    void letGo();

    bool isPlaying() const { return m_player.isPlaying(); }
    bool isScrubbing() const { return m_scrubber.isSounding(); }
    /// Frame that the player has come to.
    std::uint32_t position() const { return m_player.playPosition(); }
    void setPosition(std::uint32_t frame) { m_player.setPlayPosition(frame); }
    void setLooping(bool looping) { m_player.setLooping(looping); }
    void setGain(float gain) { m_player.setGain(gain); }
    /// Greatest of the player's values in its last buffer, of both channels; full scale is 1.
    float peak() const;

  private:
    void connect();
    void forgetLoading();

    Vornery& m_engine = Vornery::sharedInstance();
    VornSequencePlayer m_player;
    VornSequenceScrubber m_scrubber;
    bool m_connected = false;
    RunLoop::Token m_loading = 0;  // 0: no file is being loaded
};
