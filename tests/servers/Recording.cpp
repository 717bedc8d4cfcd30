#include "Recording.h"

#include <sndfile.h>

#include <array>

Recording readRecording(const std::string& path) {
    SF_INFO info{};
    SNDFILE* const file = sf_open(path.c_str(), SFM_READ, &info);
    if (!file)
        return {};
    Recording recording{{}, static_cast<std::size_t>(info.channels), double(info.samplerate)};
    std::array<float, 4096> some;
    while (const sf_count_t got = sf_read_float(file, some.data(), some.size()))
        recording.frames.insert(recording.frames.end(), some.begin(), some.begin() + got);
    sf_close(file);
    return recording;
}
