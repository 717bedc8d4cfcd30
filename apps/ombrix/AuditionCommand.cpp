#include <algorithm>
#include <chrono>
#include <cmath>
#include <memory>
#include <sstream>

#include "CommandFrame.h"
#include "Commands.h"
#include "DeviceRequest.h"
#include "Listening.h"
#include "LiveLoop.h"
#include "MeteredDevice.h"
#include "OutputRequest.h"
#include "Signals.h"
#include "SoundArgument.h"
#include "StatusLine.h"
#include "WavFileWriter.h"
#include "audiounits/devices/AudioDevices.h"
#include "log/Log.h"
#include "runloop/Clock.h"
#include "startup/Instrument.h"

namespace {

constexpr std::uint64_t kPlayedOut = 44100 / 5;  // frames of silence behind the last sound
constexpr double kHighestGain = 100;
constexpr double kSlowestPace = 60;  // seconds

constexpr CommandText kText{"ombrix audition FILE [options]",
                            "Plays a sound file or a built-in sound as it is, through an audio "
                            "device or into a 16-bit mono WAV file."};

const std::vector<OptionRow>& options() {
    static const std::vector<OptionRow> rows{
        {"from", "S", "begin S seconds after the sound's start"},
        {"loop", nullptr, "play it again and again, until stopped or for --seconds"},
        {"gain", "G", "factor for the level, 0 to 100 (1; 0.5 for --scrub)"},
        {"scrub", "S,S,...", "visit these places, in seconds, in place of playing"},
        {"pace", "S", "seconds from place to place, 0.001 to 60 (0.05)"},
        kDeviceOption,
        {"output", "OUT.wav", "write a file, faster than real time, in place of playing"},
        kForceOption,
        {"buffer-frames", "N", "frames per period, where we choose: 16 to 8192, --output from 1"},
        {"seconds", "S", "stop after S seconds; with --output write exactly as many"},
    };
    return rows;
}

/// A number in a range, from `low` on where the range is open at the top.
std::string readNumber(const Arguments& arguments, const char* option, double low, double high,
                       std::optional<double>& into) {
    const auto text = arguments.value(option);
    if (!text)
        return "";
    into = decimalNumber(*text);
    if (into && *into >= low && *into <= high)
        return "";
    std::ostringstream error;
    error << "--" << option << " " << *text << ": a number from " << low << " to " << high
          << " is wanted";
    return error.str();
}

std::string readPlaces(const std::string& text, double length, std::vector<double>& places) {
    std::string_view rest = text;
    for (bool more = true; more;) {
        const auto comma = rest.find(',');
        more = comma != std::string_view::npos;
        const std::string place(rest.substr(0, comma));
        const auto seconds = decimalNumber(place);
        if (!seconds || !(*seconds >= 0 && *seconds < length))
            return "--scrub " + text + ": \"" + place + "\" is no place in a sound of " +
                   std::to_string(length) + " s";
        places.push_back(*seconds);
        rest.remove_prefix(more ? comma + 1 : rest.size());
    }
    return "";
}

/// Answers bad use as one line, else nothing.
std::string readWish(const Arguments& arguments, const WaveAccess& sound, Listening::Wish& wish) {
    const double length = sound.sampleCount() / kGraphRate;
    std::optional<double> from, gain, pace;
    std::string error = readNumber(arguments, "from", 0, length, from);
    if (error.empty())
        error = readNumber(arguments, "gain", 0, kHighestGain, gain);
    if (error.empty())
        error = readNumber(arguments, "pace", 0.001, kSlowestPace, pace);
    if (!error.empty())
        return error;
    wish.playing.from = static_cast<std::uint32_t>(std::floor(from.value_or(0) * kGraphRate + 0.5));
    wish.playing.gain = static_cast<float>(gain.value_or(1));
    wish.playing.looping = arguments.has("loop");
    wish.scrubGain = static_cast<float>(gain.value_or(0.5));
    wish.pace = pace.value_or(wish.pace);
    if (const auto places = arguments.value("scrub"))
        return readPlaces(*places, length, wish.places);
    return "";
}

/// What does not go together, as one line; else nothing.
std::string contradiction(const Arguments& arguments) {
    if (arguments.words().size() != 1)
        return arguments.words().empty() ? "name the sound to play"
                                         : "one sound at a time, not " + arguments.words()[1];
    const bool output = arguments.has("output");
    if (arguments.has("scrub") && (arguments.has("loop") || arguments.has("from")))
        return "--scrub visits its own places; leave out --loop and --from";
    if (arguments.has("pace") && !arguments.has("scrub"))
        return "--pace is for --scrub";
    if (output && arguments.has("device"))
        return "--output plays through no device; leave out --device";
    if (output && arguments.has("loop") && !arguments.has("seconds"))
        return "--loop never ends; say with --seconds how much --output writes";
    if (!output && arguments.has("force"))
        return "--force is for --output";
    return "";
}

void goOn(Listening& listening, Audition& audition, StatusLine& line, double seconds) {
    if (Signals::takeSilenceWanted())
        audition.stop();
    listening.goOnTo(seconds);
    LiveLoop::turn();
    line.show(listening.status());
}

/// Plays against the wall clock, until all has left the device.
double listenLive(Listening& listening, Audition& audition, const MeteredDevice& device,
                  double longest) {
    StatusLine line;
    const double started = Clock::monotonic();
    double elapsed = 0;
    for (; !Signals::stopWanted() && elapsed < longest; elapsed = Clock::monotonic() - started) {
        goOn(listening, audition, line, elapsed);
        if (listening.ended() && device.silentFrames() >= kPlayedOut)
            break;
        LiveLoop::sleepUntil(started + listening.nextDue());
    }
    return elapsed;
}

/// Plays against the frame count. Empty on success, else the error; a request to stop is one.
std::string listenOffline(Listening& listening, Audition& audition, ManualDevice& device,
                          OfflineClock& clock, const OutputRequest& request, WavFileWriter& file) {
    StatusLine line;
    std::vector<std::int16_t> buffer(request.bufferFrames);
    const auto wanted = request.frames ? request.frames : listening.frames();
    const auto ended = [&] {
        return wanted ? file.framesWritten() >= *wanted
                      : file.framesWritten() > 0 && listening.ended();
    };
    while (!ended()) {
        if (Signals::stopWanted())
            return "stopped; nothing was written";
        goOn(listening, audition, line, static_cast<double>(file.framesWritten()) / kGraphRate);
        device.render(buffer);
        clock.advance(buffer.size());
        std::span<const std::int16_t> frames(buffer);
        if (wanted)
            frames = frames.first(
                std::min<std::uint64_t>(frames.size(), *wanted - file.framesWritten()));
        if (std::string error = file.write(frames); !error.empty())
            return error;
    }
    return "";
}

int auditionInto(const CommandFrame& frame, Listening::Wish wish, const Audition::Sound& sound,
                 const OutputRequest& request) {
    const auto started = std::chrono::steady_clock::now();
    WavFileWriter file;
    if (std::string error = file.open(request.output, request.replace); !error.empty())
        return frame.fail(error);
    OfflineClock clock;
    const auto device = std::make_shared<ManualDevice>();
    AudioDevices::use(device);
    Instrument instrument;
    Audition audition;
    Listening listening(audition, sound, std::move(wish));
    instrument.play();
    std::string error = listenOffline(listening, audition, *device, clock, request, file);
    instrument.stop();
    if (error.empty())
        error = file.finish();
    if (!error.empty())
        return frame.fail(error);
    tellRendered(file.framesWritten(), std::chrono::steady_clock::now() - started);
    return kExitDone;
}

int auditionAloud(Listening::Wish wish, const Audition::Sound& sound, double longest) {
    const auto device = std::make_shared<MeteredDevice>(AudioDevices::current());
    AudioDevices::use(device);
    Instrument instrument;
    Audition audition;
    Listening listening(audition, sound, std::move(wish));
    instrument.play();
    const double played = listenLive(listening, audition, *device, longest);
    const AudioDeviceInfo info = device->info();
    instrument.stop();
    Log::drain();
    tellPlayed(played, info);
    return kExitDone;
}

}  // namespace

int auditionCommand(std::span<char*> words) {
    const CommandFrame frame(words, kText, options());
    if (frame.exitCode())
        return *frame.exitCode();
    const Arguments& arguments = frame.arguments();
    if (const std::string error = contradiction(arguments); !error.empty())
        return frame.refuse(error);
    OutputRequest output;
    DeviceRequest device;
    const bool offline = arguments.has("output");
    std::string error = offline ? output.read(arguments) : device.read(arguments);
    if (error.empty() && offline)
        error = WavFileWriter::refusal(output.output, output.replace);
    if (!error.empty())
        return frame.refuse(error);

    Signals::listen();
    const std::string& name = arguments.words()[0];
    const auto path = soundPath(name);
    if (!path)
        return frame.refuse(noSuchSound(name));
    const Audition::Loaded loaded = Audition::load(*path);
    if (!loaded.sound)
        return frame.refuse(loaded.error);
    if (!loaded.notice.empty())
        tellUser("%s", loaded.notice.c_str());
    Listening::Wish wish;
    if (error = readWish(arguments, *loaded.sound, wish); !error.empty())
        return frame.refuse(error);
    return offline ? auditionInto(frame, std::move(wish), loaded.sound, output)
                   : auditionAloud(std::move(wish), loaded.sound, device.longest);
}
