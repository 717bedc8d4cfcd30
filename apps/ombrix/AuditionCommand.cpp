#include <algorithm>
#include <chrono>
#include <memory>

#include "AuditionRequest.h"
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

constexpr CommandText kText{"ombrix audition FILE [options]",
                            "Plays a sound file or a built-in sound as it is, through an audio "
                            "device or into a 16-bit mono WAV file."};

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
    endPlaying(instrument, played);
    return kExitDone;
}

}  // namespace

int auditionCommand(std::span<char*> words) {
    const CommandFrame frame(words, kText, auditionOptions());
    if (frame.exitCode())
        return *frame.exitCode();
    const Arguments& arguments = frame.arguments();
    if (const std::string error = auditionContradiction(arguments); !error.empty())
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
    if (error = readAuditionWish(arguments, *loaded.sound, wish); !error.empty())
        return frame.refuse(error);
    return offline ? auditionInto(frame, std::move(wish), loaded.sound, output)
                   : auditionAloud(std::move(wish), loaded.sound, device.longest);
}
