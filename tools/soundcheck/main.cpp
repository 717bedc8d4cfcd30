// soundcheck FILE.wav...: a line for each file, its measures parted by tabs: seconds, peak,
// loudness in LUFS, spectral centroid in hertz, clipped samples, longest gap in seconds.

#include <sndfile.h>

#include <cstdio>
#include <vector>

#include "SoundMeasures.h"

namespace {

bool check(const char* path) {
    SF_INFO info{};
    SNDFILE* file = sf_open(path, SFM_READ, &info);
    if (!file || info.channels != 1 || info.samplerate != 44100) {
        std::fprintf(stderr, "soundcheck: %s is not a mono sound at 44100 Hz\n", path);
        sf_close(file);
        return false;
    }
    std::vector<float> sound(std::size_t(info.frames));
    sound.resize(std::size_t(sf_readf_float(file, sound.data(), info.frames)));
    sf_close(file);
    const SoundMeasures m = measure(sound);
    std::printf("%.2f\t%.3f\t%.1f\t%.0f\t%zu\t%.2f\n", m.seconds, m.peak, m.loudness,
                m.centroidHertz, m.clips, m.gapSeconds);
    return true;
}

}  // namespace

int main(int count, char** words) {
    bool good = count > 1;
    for (int i = 1; i < count; ++i)
        good = check(words[i]) && good;
    return good ? 0 : 1;
}
