#include <cstdio>
#include <optional>

#include "CommandFrame.h"
#include "Commands.h"
#include "DeviceRequest.h"
#include "InstrumentRequest.h"
#include "LiveLoop.h"
#include "NetworkLines.h"
#include "RecordedPlay.h"
#include "Signals.h"
#include "audiounits/devices/AudioDevices.h"
#include "devices/AudioWords.h"
#include "folders/Folders.h"
#include "log/Log.h"
#include "midi/InstrumentControls.h"
#include "midi/MidiInput.h"
#include "midi/NetworkMode.h"
#include "parameters/PresetStore.h"
#include "runloop/Clock.h"
#include "text/UnicodeText.h"

namespace {

constexpr CommandText kText{"ombrix live [options]",
                            "Plays what MIDI keyboards and other programs send."};

const std::vector<OptionRow>& options() {
    static const std::vector<OptionRow> rows = playingOptions({
        {"network", nullptr, "let devices nearby connect, whatever the settings say"},
        {"controllers", nullptr, "use MIDI controllers, whatever the settings say"},
    });
    return rows;
}

/// The instrument without a window, until somebody ends it.
class Live {
  public:
    Live(Instrument& instrument, UserDefaults& defaults)
        : m_instrument(instrument), m_midi(defaults) {
        m_midi.setNotes(&instrument.notes());
    }
    ~Live() { m_midi.controls().setTarget(nullptr); }

    void openNetwork(NetworkMode mode) { useNetworkMode(m_midi.hub(), mode); }
    void useControllers() {
        m_midi.controls().enableForNow();
        m_reach.emplace(m_instrument);
        m_midi.controls().setTarget(&m_reach->controls);
    }
    bool controllersWanted() { return m_midi.controls().enabled(); }

    /// Until a signal, or `longest` seconds have passed.
    void run(double longest, RecordedPlay& recorded) {
        const double end = m_started + longest;
        while (!Signals::stopWanted() && Clock::monotonic() < end) {
            if (Signals::takeSilenceWanted())
                m_instrument.silence();
            LiveLoop::turn();
            recorded.goOn();
            tellPlace();
            m_network.look();
            LiveLoop::sleepUntil(end);
        }
        m_midi.setNotes(nullptr);
        m_instrument.notes().releaseAll();
    }

    double elapsed() const { return Clock::monotonic() - m_started; }

  private:
    /// What controllers reach beside the keys.
    struct Reach {
        explicit Reach(Instrument& instrument) : controls(instrument, store.presets()) {}
        PresetStore store{WaveChoice::presetFilename(),
                          WaveChoice::resource("default-presets.plist").value_or(""),
                          [](const std::string& line) { tellUser("%s", line.c_str()); }};
        InstrumentControls controls;
    };

    /// Once it is known.
    void tellPlace() {
        const AudioDeviceState state = AudioDevices::state();
        if (m_told || state.presence == AudioDeviceState::Presence::starting)
            return;
        m_told = true;
        const auto words =
            AudioWords::state(AudioDevices::current()->info(), state, AudioDevices::chosen());
        tell(words.toStdString() + " MIDI port \"" + Folders::applicationName() +
             "\". Ctrl+C ends.");
    }
    static void tell(const std::string& line) {
        std::puts(UnicodeText::withoutControls(line).c_str());
        std::fflush(stdout);
    }

    Instrument& m_instrument;
    std::optional<Reach> m_reach;
    MidiInput m_midi;
    NetworkLines m_network{
        [](const std::string& who, const std::string& what) { tell(who + " " + what); }};
    const double m_started = Clock::monotonic();
    bool m_told = false;
};

int playLive(const CommandFrame& frame, Instrument& instrument, double longest) {
    UserDefaults defaults;
    Live live(instrument, defaults);
    instrument.play();  // after MIDI, whose ports lie in the client that plays
    const bool open = frame.arguments().has("network");
    live.openNetwork(open ? NetworkMode::nearby : keptNetworkMode(defaults));
    if (frame.arguments().has("controllers") || live.controllersWanted())
        live.useControllers();
    RecordedPlay recorded(instrument, frame.arguments());
    live.run(longest, recorded);
    const bool good = recorded.finish();
    endPlaying(instrument, live.elapsed());
    return good ? kExitDone : kExitFailed;
}

}  // namespace

int liveCommand(std::span<char*> words) {
    const CommandFrame frame(words, kText, options());
    if (frame.exitCode())
        return *frame.exitCode();
    if (!frame.arguments().words().empty())
        return frame.refuse("live takes no " + frame.arguments().words()[0]);
    DeviceRequest request;
    std::string error = request.read(frame.arguments());
    if (!error.empty())
        return frame.refuse(error);
    Signals::listen();
    const auto instrument = makeInstrument(frame.arguments(), error);
    if (!instrument)
        return frame.refuse(error);
    return playLive(frame, *instrument, request.longest);
}
