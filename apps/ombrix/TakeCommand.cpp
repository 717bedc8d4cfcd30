#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>

#include "CommandFrame.h"
#include "Commands.h"
#include "LiveLoop.h"
#include "Signals.h"
#include "TakeRequest.h"
#include "audiounits/devices/AudioDevices.h"
#include "log/Log.h"
#include "recording/AudioTake.h"
#include "runloop/Clock.h"
#include "startup/Instrument.h"
#include "wavechoice/StoredWave.h"

namespace {

constexpr double kShortestSleep = 0.005;  // seconds, while the last frames come in
constexpr double kLate = 1.0;             // seconds by which a device may lag before we give up

constexpr CommandText kText{"ombrix take NAME [options]",
                            "Records the microphone into a sound of your own, \"NAME.wav\" in the "
                            "data folder,\nuntil 30 seconds are over or Ctrl+C ends it."};

const std::vector<OptionRow>& options() {
    static const std::vector<OptionRow> rows{
        {"seconds", "S", "end after S seconds, at most 30 (30)"},
        {"device", "NAME", "jack, pulse, pulse:SINK, alsa or alsa:PCM (the first there is)"},
        {"force", nullptr, "replace a sound that has this name"},
        {"recover", nullptr, "do not record: give the name to a take that was left over"},
    };
    return rows;
}

/// Shows a take on the terminal, if there is one.
class TakeShow final : public AudioTakeDelegate {
  public:
    const std::shared_ptr<VornWaveSequence>& take() const { return m_take; }

  private:
    void bubbleShown(const std::string& text) override { show(text); }
    void bubbleDismissed() override { show(""); }
    void alertShown(const std::string& title, const std::string& message,
                    const std::string&) override {
        tellUser("%s: %s", title.c_str(), message.c_str());
    }
    void takeMade(const std::shared_ptr<VornWaveSequence>& take) override { m_take = take; }

    void show(const std::string& text) const {
        if (!m_terminal)
            return;
        std::printf("\r%-9s\r", text.c_str());  // over the longest of them
        std::fflush(stdout);
    }

    const bool m_terminal = isatty(STDOUT_FILENO) == 1;
    std::shared_ptr<VornWaveSequence> m_take;
};

double secondsOf(std::uint32_t frames) {
    return frames / kGraphRate;
}

/// Whether the clock plays in place of the device that was asked for.
bool deviceGone(const TakeRequest& request) {
    return request.device != "clock" && AudioDevices::current()->info().name == "clock";
}

/// Returns when the time is over, a signal came, or the device went away.
void listen(AudioTake& take, const TakeRequest& request) {
    const double end = Clock::monotonic() + request.seconds + kLate;
    while (take.recording() && !Signals::stopWanted()) {
        const double missing = request.seconds - secondsOf(take.framesHeard());
        if (missing <= 0 || Clock::monotonic() > end)
            break;
        if (deviceGone(request)) {
            tellUser("the take ends here, because the device went away");
            break;
        }
        LiveLoop::sleepUntil(Clock::monotonic() + std::max(missing, kShortestSleep));
        LiveLoop::turn();
    }
    if (take.recording())
        take.waveRecordUp();
}

constexpr const char* kKept = "; the take is kept: ombrix take --recover NAME stores it";

std::string nameTake(UnsavedTake& unsaved, const VornWaveSequence& take,
                     const TakeRequest& request) {
    if (unsaved.path().empty())
        return StoredWave::store(take, request.path, request.existing);
    const std::string error = unsaved.nameIt(request.path, request.existing);
    return error.empty() ? "" : error + kKept;
}

void mentionLeftOver(UnsavedTake& unsaved) {
    if (const auto count = unsaved.leftOver().size())
        tellUser("%zu unsaved take%s left over: ombrix take --recover NAME stores %s", count,
                 count == 1 ? " is" : "s are", count == 1 ? "it" : "one");
}

int record(const CommandFrame& frame, const TakeRequest& request, UnsavedTake& unsaved) {
    Instrument instrument(false);
    AudioTake take(instrument.waves(), &unsaved);
    TakeShow show;
    take.setDelegate(&show);
    take.waveRecordDown();
    if (deviceGone(request))
        return frame.fail("nothing was recorded: there is no microphone");
    listen(take, request);
    instrument.stop();
    Log::drain();
    if (!show.take())
        return kExitFailed;
    if (const std::string error = nameTake(unsaved, *show.take(), request); !error.empty())
        return frame.fail(error);
    std::printf("%.2f s recorded, peak %.4f before normalising: %s\n",
                secondsOf(show.take()->sampleCount()), static_cast<double>(take.lastPeak()),
                request.path.c_str());
    if (take.lastPeak() == 0)
        tellUser("nothing but silence was heard; see whether the microphone is connected and on");
    return kExitDone;
}

int recover(const CommandFrame& frame, const TakeRequest& request, UnsavedTake& unsaved) {
    WaveChoice::Loaded loaded;
    std::string error = "no take was left over";
    for (const std::string& found : unsaved.leftOver()) {
        loaded = WaveChoice::load(found);
        error = loaded.error;
        if (loaded.wave && unsaved.adopt(found, error))
            break;
        loaded.wave = nullptr;  // damaged, or another instance was quicker; there may be more
    }
    if (!loaded.wave)
        return frame.fail(error);
    if (error = unsaved.nameIt(request.path, request.existing); !error.empty())
        return frame.fail(error + kKept);
    std::printf("%.2f s recovered: %s\n", secondsOf(loaded.wave->sampleCount()),
                request.path.c_str());
    mentionLeftOver(unsaved);
    return kExitDone;
}

}  // namespace

int takeCommand(std::span<char*> words) {
    const CommandFrame frame(words, kText, options());
    if (frame.exitCode())
        return *frame.exitCode();
    TakeRequest request;
    if (const std::string error = request.read(frame.arguments()); !error.empty())
        return frame.refuse(error);
    if (const std::string error = WaveChoice::makeDataFolder(); !error.empty())
        return frame.fail(error);
    Signals::listen();
    InstanceLock place(std::filesystem::path(request.path).parent_path());
    UnsavedTake unsaved(place);
    if (frame.arguments().has("recover"))
        return recover(frame, request, unsaved);
    mentionLeftOver(unsaved);
    return record(frame, request, unsaved);
}
