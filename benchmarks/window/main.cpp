#include <cstdio>
#include <cstdlib>
#include <filesystem>

#include "JackServer.h"
#include "Measurements.h"
#include "WindowSession.h"
#include "audiounits/devices/AudioDevices.h"

// QT_QUICK_BACKEND=software chooses the software renderer, else it is GL.

namespace {

constexpr const char* kUsage =
    "window_benchmark startup [PROGRAM] | touch | latency [PERIOD] | frames | idle | memory | "
    "growth [TIMES] | waves";

bool measure(const std::string& what, int number, int period) {
    const WindowSession session(1920, 1200);
    std::string error;
    AudioDevices::choose("jack", error);
    if (what == "touch")
        measureTouch();
    else if (what == "latency")
        measureLatency(period);
    else if (what == "frames")
        measureFrames();
    else if (what == "idle")
        measureIdle();
    else if (what == "memory")
        measureMemory();
    else if (what == "growth")
        measureGrowth(number ? number : 10000);
    else if (what == "waves")
        measureWaves();
    else
        return false;
    return true;
}

}  // namespace

int main(int argc, char** argv) {
    const std::string what = argc > 1 ? argv[1] : "";
    const int number = argc > 2 ? std::atoi(argv[2]) : 0;
    const int period = what == "latency" && number ? number : 256;
    JackServer server;
    server.start(44100, period);
    if (what == "startup") {
        const auto beside = std::filesystem::path(argv[0]).parent_path() / "ombrix-synth";
        measureStartup(argc > 2 ? argv[2] : beside.string());
        return 0;
    }
    if (measure(what, number, period))
        return 0;
    std::puts(kUsage);
    return 2;
}
