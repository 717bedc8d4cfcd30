#include "Measurements.h"

#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <stdexcept>

#include "DisplayServer.h"
#include "Figures.h"
#include "LatencyProbe.h"
#include "Process.h"
#include "ScratchFolder.h"

namespace {

constexpr int kStarts = 11;  // the first one warms

using Clock = std::chrono::steady_clock;

double millisecondsSince(Clock::time_point start) {
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

bool comesTo(const std::function<bool()>& truth) {
    const auto start = Clock::now();
    while (millisecondsSince(start) < 10000) {
        if (truth())
            return true;
        usleep(1000);
    }
    return false;
}

bool says(const std::string& log, const char* words) {
    std::ifstream file(log);
    for (std::string line; std::getline(file, line);) {
        if (line.find(words) != std::string::npos)
            return true;
    }
    return false;
}

struct Start {
    double frame = 0;  // milliseconds
    double sound = 0;
};

/// A key that is pressed before the sound in use has been loaded is silent.
bool soundsWhenTapped(LatencyProbe& probe) {
    runProgram({"xdotool", "mousemove", "600", "760", "mousedown", "1"});
    for (int wait = 0; wait < 30 && !probe.heard(); ++wait)
        usleep(1000);
    runProgram({"xdotool", "mouseup", "1"});
    return probe.heard().has_value();
}

Start start(const std::string& program, LatencyProbe& probe) {
    const ScratchFolder folder;
    const std::string log = folder.file("log");
    Start figures;
    runProgram({"xdotool", "mousemove", "1", "1"});
    const auto begin = Clock::now();
    Process instrument({program, "--verbose", "--device", "jack"}, log);
    if (!comesTo([&] { return says(log, "first frame"); }))
        throw std::runtime_error("no first frame");
    figures.frame = millisecondsSince(begin);
    if (!comesTo([&] { return probe.connect(kInstrumentPort); }))
        throw std::runtime_error("no connection to JACK");
    probe.listen();
    if (!comesTo([&] { return soundsWhenTapped(probe); }))
        throw std::runtime_error("no sound");
    figures.sound = millisecondsSince(begin);
    instrument.terminate();
    return figures;
}

}  // namespace

void measureStartup(const std::string& program) {
    const DisplayServer display(1280, 800);
    const ScratchFolder folder;
    setenv("OMBRIX_DATA", folder.file("data").c_str(), 1);
    setenv("XDG_CONFIG_HOME", folder.file("config").c_str(), 1);
    setenv("XDG_RUNTIME_DIR", folder.file("").c_str(), 0);
    LatencyProbe probe;
    std::vector<double> frames;
    std::vector<double> sounds;
    start(program, probe);
    for (int i = 1; i < kStarts; ++i) {
        const Start figures = start(program, probe);
        frames.push_back(figures.frame);
        sounds.push_back(figures.sound);
    }
    tellFigures("start to first frame", frames, "ms", "800");
    tellFigures("start to first sound", sounds, "ms", "1000");
}
