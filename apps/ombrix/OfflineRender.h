#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "SongSession.h"
#include "audiounits/devices/ManualDevice.h"
#include "runloop/Clock.h"

/// Counts output frames that are 0 since the last one that is not.
class SilenceMeter {
  public:
    void take(std::span<const std::int16_t> frames);
    std::uint64_t silentFrames() const { return m_silent; }

  private:
    std::uint64_t m_silent = 0;
};

/// Offline the frame count is the program's clock while this lives. Every answer within a buffer is
/// a nanosecond later than the one before, so that no two triggers are equally old.
class OfflineClock final : public TimeSource {
  public:
    OfflineClock() { Clock::setSource(this); }
    ~OfflineClock() override { Clock::setSource(nullptr); }
    double now() noexcept override {
        return static_cast<double>(m_frames) / kGraphRate + static_cast<double>(m_answers++) * 1e-9;
    }
    void advance(std::uint64_t frames) {
        m_frames += frames;
        m_answers = 0;
    }

  private:
    std::uint64_t m_frames = 0;
    std::uint64_t m_answers = 0;
};

/// Renders a song buffer by buffer through the very graph that plays live.
class OfflineRender {
  public:
    /// `frames`: length of the result; without it the render ends when all has faded, at most 60 s
    /// after the song's last End of Track. The device must be the one in use.
    OfflineRender(SongSession& session, ManualDevice& device, OfflineClock& clock,
                  std::uint32_t bufferFrames, std::optional<std::uint64_t> frames);

    bool finished() const { return m_finished; }
    /// The next frames of the result; valid until the next call.
    std::span<const std::int16_t> next();

  private:
    bool faded() const;
    bool tooLong() const;

    SongSession& m_session;
    ManualDevice& m_device;
    OfflineClock& m_clock;
    SongPlayer m_player;
    std::vector<std::int16_t> m_buffer;
    std::optional<std::uint64_t> m_wanted;
    SilenceMeter m_silence;
    std::uint64_t m_rendered = 0;
    bool m_finished = false;
};
