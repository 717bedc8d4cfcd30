// soundmaker: makes the sounds that the instrument ships with, the same bytes every time.

#include <algorithm>
#include <cstdio>
#include <string_view>

#include "Finish.h"
#include "WavFile.h"
#include "Waves.h"

namespace {

int list() {
    for (const Wave& wave : kWaves)
        std::printf("%s\t%g\t%s\n", wave.name.data(), wave.hertz, wave.loops ? "loops" : "fades");
    return 0;
}

int make(const Wave& wave, const char* path) {
    Sound sound = wave.make();
    wave.loops ? finishLoop(sound) : finishStruck(sound);
    if (writeWav(path, sound))
        return 0;
    std::fprintf(stderr, "soundmaker: %s cannot be written\n", path);
    return 1;
}

}  // namespace

int main(int count, char** words) {
    if (count == 2 && words[1] == std::string_view("--list"))
        return list();
    if (count == 3) {
        const auto* wave = std::ranges::find(kWaves, std::string_view(words[1]), &Wave::name);
        if (wave != kWaves.end())
            return make(*wave, words[2]);
    }
    std::fputs("usage: soundmaker NAME OUT.wav, or soundmaker --list\n", stderr);
    return 2;
}
