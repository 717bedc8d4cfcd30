#include "CommandLine.h"

#include <array>
#include <cstdio>

#include "Options.h"
#include "audiounits/devices/AudioDevices.h"
#include "log/Log.h"

namespace {

constexpr std::array kOptions{
    OptionRow{"device", "NAME", "jack, pulse, pulse:SINK, alsa, alsa:PCM or clock"},
    OptionRow{"buffer-frames", "N",
              "frames per period where the device lets us choose, 16 to 8192"},
    OptionRow{"verbose", nullptr, "show the program's log"},
    OptionRow{"version", nullptr, "show the version"},
    OptionRow{"help", nullptr, "show this"},
};

void printHelp() {
    std::printf(
        "Usage: ombrix-synth [options] [FILE...]\n\n"
        "Opens the instrument. A sound among the files becomes the sound in use; presets and\n"
        "bundles are taken in, and the last one is chosen.\n\n%s",
        helpText(kOptions).c_str());
}

/// One line for what cannot be followed, else nothing.
std::string choosePeriod(const Arguments& arguments) {
    const auto text = arguments.value("buffer-frames");
    if (!text)
        return "";
    const auto frames = wholeNumber(*text, 16, kMaximumDeviceFrames);
    if (!frames)
        return "--buffer-frames " + *text + ": a whole number from 16 to 8192 is wanted";
    AudioDevices::setPreferredPeriod(static_cast<std::uint32_t>(*frames));
    return "";
}

}  // namespace

std::optional<int> CommandLine::read(std::span<char*> words) {
    std::string error;
    const Arguments arguments(words, kOptions, error);
    if (error.empty() && arguments.has("help")) {
        printHelp();
        return 0;
    }
    if (error.empty() && arguments.has("version")) {
        std::puts("ombrix-synth " OMBRIX_VERSION);
        return 0;
    }
    if (error.empty())
        error = choosePeriod(arguments);
    device = arguments.value("device");
    if (error.empty() && device)
        AudioDevices::choose(*device, error);
    if (!error.empty()) {
        tellUser("%s; see ombrix-synth --help", error.c_str());
        return 2;
    }
    Log::setVerbose(arguments.has("verbose"));
    for (const std::string& word : arguments.words())
        files.append(QString::fromLocal8Bit(word.c_str()));
    return std::nullopt;
}
