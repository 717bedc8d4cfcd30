// Loads any bytes as a sound file, through the same calls as the instrument. What plays must be
// whole: as many frames as said, every sample finite.

#include <sys/mman.h>
#include <unistd.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "VornWave2.h"
#include "log/Log.h"

namespace {

void check(const VornWave2& wave) {
    std::uint32_t count = wave.sampleCount();
    std::int32_t format = 0;
    const float* samples = wave.retrieveWindowAt(0, &count, &format);
    if ((samples == nullptr) == wave.loadError().empty())
        std::abort();
    const std::size_t floats = samples ? std::size_t{count} * (format == 0 ? 1 : 2) : 0;
    for (std::size_t i = 0; i < floats; ++i)
        if (!std::isfinite(samples[i]))
            std::abort();
}

}  // namespace

// libsndfile 1.2 forgets what it has begun to decode when an Ogg file turns out to be broken.
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions() {
    return "leak:libvorbis\nleak:libogg\nleak:libsndfile\n";
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const int file = memfd_create("sound", MFD_CLOEXEC);
    if (file < 0 || write(file, data, size) != static_cast<ssize_t>(size))
        std::abort();
    check(*VornWave2::initWithContentsOfFile(std::to_string(file), "/proc/self/fd"));
    close(file);
    Log::clear();
    return 0;
}
