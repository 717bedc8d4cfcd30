#include <algorithm>
#include <chrono>
#include <string>

#include "CommandFrame.h"
#include "Commands.h"
#include "OfflineRender.h"
#include "OutputRequest.h"
#include "Signals.h"
#include "StatusLine.h"
#include "WavFileWriter.h"
#include "audiounits/devices/AudioDevices.h"
#include "log/Log.h"
#include "runloop/RunLoop.h"

namespace {

constexpr CommandText kText{"ombrix render SONG.mid --output OUT.wav [options]",
                            "Plays a MIDI file through the instrument, faster than real time, into "
                            "a 16-bit mono WAV file."};

const std::vector<OptionRow>& options() {
    static const std::vector<OptionRow> rows = withInstrumentOptions({
        kOutputOption,
        kForceOption,
        kBufferOption,
        kLengthOption,
    });
    return rows;
}

/// A percentage, as it moves on.
class Progress {
  public:
    explicit Progress(std::uint64_t frames) : m_frames(frames) {}
    void show(std::uint64_t rendered) {
        const int percent =
            m_frames ? static_cast<int>(std::min<std::uint64_t>(99, rendered * 100 / m_frames)) : 0;
        if (percent != m_shown)
            m_line.show(std::to_string(m_shown = percent) + "%");
    }

  private:
    std::uint64_t m_frames;
    StatusLine m_line;
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
        RunLoop::main().turn();
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
    OutputRequest request;
    if (const std::string error = request.read(frame.arguments()); !error.empty())
        return frame.refuse(error);

    Signals::listen();
    OfflineClock clock;
    const auto device = std::make_shared<ManualDevice>();
    AudioDevices::use(device);
    WavFileWriter file;
    std::string error = WavFileWriter::refusal(request.output, request.replace);
    if (!error.empty())
        return frame.refuse(error);
    const auto session = SongSession::prepare(frame.arguments(), error);
    if (!session)
        return frame.refuse(error);
    if (request.frames.value_or(session->timeline().endFrame) > WavFileWriter::maximumFrames())
        return frame.refuse("the song is longer than a WAV file can be; use --seconds");
    if (error = file.open(request.output, request.replace); !error.empty())
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

    tellRendered(file.framesWritten(), std::chrono::steady_clock::now() - started);
    return kExitDone;
}
