#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <optional>

#include "CommandFrame.h"
#include "Commands.h"
#include "OfflineRender.h"
#include "Signals.h"
#include "WavFileWriter.h"
#include "audiounits/devices/AudioDevices.h"
#include "log/Log.h"

namespace {

constexpr unsigned kDefaultBuffer = 512;  // frames
constexpr double kLongestSeconds = 48000.0;

constexpr CommandText kText{"ombrix render SONG.mid --output OUT.wav [options]",
                            "Plays a MIDI file through the instrument, faster than real time, into "
                            "a 16-bit mono WAV file."};

const std::vector<OptionRow>& options() {
    static const std::vector<OptionRow> rows = withSongOptions({
        {"output", "OUT.wav", "the file to write"},
        {"force", nullptr, "replace the file if it exists"},
        {"buffer-frames", "N", "frames per buffer, 1 to 8192 (512)"},
        {"seconds", "S", "write exactly S seconds"},
    });
    return rows;
}

struct Request {
    std::string output;
    std::uint32_t bufferFrames = kDefaultBuffer;
    std::optional<std::uint64_t> frames;
};

std::string readRequest(const Arguments& arguments, Request& request) {
    const auto output = arguments.value("output");
    if (!output || output->empty())
        return "name the file to write with --output OUT.wav";
    request.output = *output;
    if (const auto text = arguments.value("buffer-frames")) {
        const auto frames = wholeNumber(*text, 1, kMaximumDeviceFrames);
        if (!frames)
            return "--buffer-frames " + *text + ": a whole number from 1 to 8192 is wanted";
        request.bufferFrames = static_cast<std::uint32_t>(*frames);
    }
    if (const auto text = arguments.value("seconds")) {
        const auto seconds = decimalNumber(*text);
        if (!seconds || !(*seconds >= 0 && *seconds <= kLongestSeconds))
            return "--seconds " + *text + ": a number from 0 to 48000 is wanted";
        request.frames = static_cast<std::uint64_t>(std::floor(*seconds * kGraphRate + 0.5));
    }
    return "";
}

/// A percentage on a terminal, and only there.
class Progress {
  public:
    explicit Progress(std::uint64_t frames) : m_frames(frames) {}
    ~Progress() {
        if (m_shown >= 0)
            std::fprintf(stderr, "\r    \r");
    }
    void show(std::uint64_t rendered) {
        const int percent =
            m_frames ? static_cast<int>(std::min<std::uint64_t>(99, rendered * 100 / m_frames)) : 0;
        if (!m_terminal || percent == m_shown)
            return;
        m_shown = percent;
        std::fprintf(stderr, "\r%d%%", percent);
    }

  private:
    std::uint64_t m_frames;
    bool m_terminal = isatty(STDERR_FILENO) != 0;
    int m_shown = -1;
};

/// Empty on success, else the error; a request to stop is one.
std::string renderAll(OfflineRender& render, SongSession& session, WavFileWriter& file,
                      std::uint64_t expectedFrames) {
    Progress progress(expectedFrames);
    while (!render.finished()) {
        if (Signals::stopWanted())
            return "stopped; nothing was written";
        if (Signals::takeSilenceWanted())
            session.instrument().silence();
        if (std::string error = file.write(render.next()); !error.empty())
            return error;
        Log::drain();
        progress.show(file.framesWritten());
    }
    return "";
}

}  // namespace

int renderCommand(std::span<char*> words) {
    const auto started = std::chrono::steady_clock::now();
    const CommandFrame frame(words, kText, options());
    if (frame.exitCode())
        return *frame.exitCode();
    Request request;
    if (const std::string error = readRequest(frame.arguments(), request); !error.empty())
        return frame.refuse(error);

    Signals::listen();
    OfflineClock clock;
    const auto device = std::make_shared<ManualDevice>();
    AudioDevices::use(device);
    WavFileWriter file;
    const bool replace = frame.arguments().has("force");
    std::string error = WavFileWriter::refusal(request.output, replace);
    if (!error.empty())
        return frame.refuse(error);
    const auto session = SongSession::prepare(frame.arguments(), error);
    if (!session)
        return frame.refuse(error);
    if (request.frames.value_or(session->timeline().endFrame) > WavFileWriter::maximumFrames())
        return frame.refuse("the song is longer than a WAV file can be; use --seconds");
    if (error = file.open(request.output, replace); !error.empty())
        return frame.fail(error);

    session->instrument().play();
    OfflineRender render(*session, *device, clock, request.bufferFrames, request.frames);
    error =
        renderAll(render, *session, file, request.frames.value_or(session->timeline().endFrame));
    session->instrument().stop();
    if (error.empty())
        error = file.finish();
    if (!error.empty())
        return frame.fail(error);

    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - started;
    const double seconds = static_cast<double>(file.framesWritten()) / kGraphRate;
    std::printf("%.2f s of sound in %.2f s, %.0f times as fast as it plays\n", seconds,
                taken.count(), seconds / taken.count());
    return kExitDone;
}
