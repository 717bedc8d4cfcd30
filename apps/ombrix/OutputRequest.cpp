#include "OutputRequest.h"

#include <cmath>
#include <cstdio>

#include "CommandFrame.h"
#include "audiounits/devices/AudioDevice.h"

namespace {
constexpr double kLongestSeconds = 48000.0;
}

std::string OutputRequest::read(const Arguments& arguments) {
    output = arguments.value("output").value_or("");
    if (output.empty())
        return "name the file to write with --output OUT.wav";
    replace = arguments.has("force");
    if (const auto text = arguments.value("buffer-frames")) {
        const auto wanted = wholeNumber(*text, 1, kMaximumDeviceFrames);
        if (!wanted)
            return "--buffer-frames " + *text + ": a whole number from 1 to 8192 is wanted";
        bufferFrames = static_cast<std::uint32_t>(*wanted);
    }
    if (const auto text = arguments.value("seconds")) {
        const auto seconds = decimalNumber(*text);
        if (!seconds || !(*seconds >= 0 && *seconds <= kLongestSeconds))
            return "--seconds " + *text + ": a number from 0 to 48000 is wanted";
        frames = static_cast<std::uint64_t>(std::floor(*seconds * kGraphRate + 0.5));
    }
    return "";
}

void tellRendered(std::uint64_t frames, std::chrono::duration<double> taken) {
    const double seconds = static_cast<double>(frames) / kGraphRate;
    std::printf("%.2f s of sound in %.2f s, %.0f times as fast as it plays\n", seconds,
                taken.count(), seconds / taken.count());
}
