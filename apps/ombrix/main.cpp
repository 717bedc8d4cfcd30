#include <array>
#include <cstdio>
#include <cstring>
#include <exception>

#include "Commands.h"
#include "StandardFiles.h"
#include "log/Log.h"

namespace {

struct Command {
    const char* name;
    const char* purpose;
    int (*run)(std::span<char*> words);
};

constexpr std::array kCommands{
    Command{"render", "play a MIDI file into a WAV file, faster than real time", renderCommand},
    Command{"play", "play a MIDI file through an audio device", playCommand},
    Command{"live", "play the instrument over MIDI, through an audio device", liveCommand},
    Command{"midi", "list MIDI sources and destinations, or show what comes", midiCommand},
    Command{"take", "record the microphone into a sound of your own", takeCommand},
    Command{"audition", "play or scrub a sound as it is", auditionCommand},
    Command{"devices", "list the audio devices", devicesCommand},
    Command{"presets", "list, show, rename, delete, import and export presets", presetsCommand},
};

void printHelp() {
    std::puts(
        "Ombrix Synth, a grain synthesiser, on the command line.\n\n"
        "Usage: ombrix COMMAND [options]\n");
    for (const Command& command : kCommands)
        std::printf("  %-10s%s\n", command.name, command.purpose);
    std::puts("\nombrix COMMAND --help tells more; ombrix --version tells the version.");
}

int run(std::span<char*> words) {
    if (words.empty()) {
        printHelp();
        return kExitDone;
    }
    const char* const word = words[0];
    if (!std::strcmp(word, "--help") || !std::strcmp(word, "-h") || !std::strcmp(word, "help")) {
        printHelp();
        return kExitDone;
    }
    if (!std::strcmp(word, "--version")) {
        std::puts("ombrix " OMBRIX_VERSION);
        return kExitDone;
    }
    for (const Command& command : kCommands) {
        if (!std::strcmp(word, command.name))
            return command.run(words);
    }
    tellUser("%s is no command; see ombrix --help", word);
    return kExitBadUse;
}

/// A list that a full disk has cut must not pass for a whole one.
int afterOutput(int code) {
    if (std::fflush(stdout) == 0 && !std::ferror(stdout))
        return code;
    tellUser("not all of the output could be written; is its disk full?");
    return code == kExitDone ? kExitFailed : code;
}

}  // namespace

int main(int argc, char** argv) {
    fillStandardFiles();
    try {
        const std::span words(argv, static_cast<std::size_t>(argc));
        return afterOutput(run(words.subspan(argc > 0 ? 1 : 0)));
    } catch (const std::exception& failure) {  // out of memory, in practice
        tellUser("stopped: %s", failure.what());
        return kExitFailed;
    }
}
