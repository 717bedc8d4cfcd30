#include <limits>

#include "CommandFrame.h"
#include "Commands.h"
#include "DeviceRequest.h"
#include "LiveLoop.h"
#include "MeteredDevice.h"
#include "RecordedPlay.h"
#include "Signals.h"
#include "SongSession.h"
#include "audiounits/devices/AudioDevices.h"
#include "runloop/Clock.h"

namespace {

constexpr double kLongestTail = 60.0;  // seconds after the song's end
constexpr double kNever = std::numeric_limits<double>::infinity();
constexpr std::uint64_t kFadedFrames = 44100;

constexpr CommandText kText{"ombrix play SONG.mid [options]",
                            "Plays a MIDI file through an audio device."};

const std::vector<OptionRow>& options() {
    static const std::vector<OptionRow> rows = playingOptions();
    return rows;
}

/// Plays a song against the wall clock: events are sent as their time comes.
class LivePlay {
  public:
    LivePlay(SongSession& session, const MeteredDevice& device, double longest)
        : m_session(session),
          m_device(device),
          m_player(session.timeline(), session.instrument().notes()),
          m_longest(longest) {}

    void run(RecordedPlay& recorded) {
        m_started = Clock::monotonic();
        while (!Signals::stopWanted() && !finished()) {
            if (Signals::takeSilenceWanted())
                m_session.instrument().silence();
            // The frame that is due now, and the one that began with this very moment.
            m_player.sendUntil(static_cast<std::uint64_t>(elapsed() * kGraphRate) + 1);
            recorded.goOn();
            LiveLoop::turn();
            LiveLoop::sleepUntil(m_player.ended() ? kNever : m_started + nextEvent());
        }
        m_session.instrument().notes().releaseAll();
    }

    double elapsed() const { return Clock::monotonic() - m_started; }

  private:
    double nextEvent() const { return static_cast<double>(m_player.nextFrame()) / kGraphRate; }
    bool finished() const {
        if (elapsed() >= m_longest)
            return true;
        if (!m_player.ended())
            return false;
        const double end = static_cast<double>(m_session.timeline().endFrame) / kGraphRate;
        Instrument& instrument = m_session.instrument();
        return elapsed() > end + kLongestTail ||
               (!instrument.keysSound() &&
                m_device.silentFrames() >= kFadedFrames + instrument.echoFrames());
    }

    SongSession& m_session;
    const MeteredDevice& m_device;
    SongPlayer m_player;
    double m_longest;  // seconds
    double m_started = 0;
};

}  // namespace

int playCommand(std::span<char*> words) {
    const CommandFrame frame(words, kText, options());
    if (frame.exitCode())
        return *frame.exitCode();
    DeviceRequest request;
    std::string error = request.read(frame.arguments());
    if (!error.empty())
        return frame.refuse(error);
    Signals::listen();
    const auto device = std::make_shared<MeteredDevice>(AudioDevices::current());
    AudioDevices::use(device);
    const auto session = SongSession::prepare(frame.arguments(), error);
    if (!session)
        return frame.refuse(error);

    session->instrument().play();
    LivePlay play(*session, *device, request.longest);
    RecordedPlay recorded(session->instrument(), frame.arguments());
    play.run(recorded);
    const bool good = recorded.finish();
    endPlaying(session->instrument(), play.elapsed());
    return good ? kExitDone : kExitFailed;
}
