// Any bytes as a preset bundle: refused with one line, or a preset and perhaps a sound that stays
// within its limit and has a name that may lie in the data folder.
#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <string>

#include "log/Log.h"
#include "parameters/PresetBundle.h"
#include "wavechoice/WaveChoice.h"
#include "wavechoice/WaveNames.h"

namespace {

void check(bool holds) {
    if (!holds)
        std::abort();
}

void checkLine(const std::string& line) {
    check(!line.empty() && line.find('\n') == std::string::npos);
}

void checkSound(PresetBundle& bundle, const std::string& name) {
    constexpr std::uint64_t kEnough = 4 << 20;
    std::uint64_t unpacked = 0;
    std::string error;
    const auto count = [&](std::span<const std::uint8_t> part) {
        unpacked += part.size();
        return unpacked < kEnough;
    };
    if (!bundle.unpackSound(name, count, error) && unpacked < kEnough)
        checkLine(error);
}

void checkBundle(const std::string& path) {
    std::string error;
    const auto bundle = PresetBundle::open(path, error);
    if (!bundle)
        return checkLine(error);
    const auto wave = bundle->preset().find("wave");
    if (wave == bundle->preset().end() || !wave->second.string())
        return;
    const std::string name = WaveChoice::plainWaveName(*wave->second.string());
    if (!WaveNames::isStorable(name))
        return;
    check(name.find('/') == std::string::npos && name[0] != '.' && name.size() <= 255);
    if (bundle->hasSound(name))
        checkSound(*bundle, name);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const int file = memfd_create("bundle", MFD_CLOEXEC);
    if (file < 0 || write(file, data, size) != static_cast<ssize_t>(size))
        std::abort();
    checkBundle("/proc/self/fd/" + std::to_string(file));
    close(file);
    Log::clear();
    return 0;
}
