// Waves: writing them to files.
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <limits>

#include "VornWave2.h"
#include "files/VornOutputAudioFile.h"
#include "log/Log.h"
#include "storage/AsideNames.h"
#include "storage/WriteAll.h"

namespace {

/// The file behind a link, so that a linked file is replaced and not the link.
std::filesystem::path behindLinks(const std::string& path) {
    std::error_code missing;
    const auto real = std::filesystem::canonical(path, missing);
    return missing ? std::filesystem::path(path) : real;
}

}  // namespace

bool VornWave2::writeWavFile(const std::string& path) const {
    const Content* content = bkgLoadState() == loaded ? m_content.load() : nullptr;
    const std::uint64_t bytes =
        content ? std::min<std::uint64_t>(
                      std::uint64_t{m_myAudioDescription.mBytesPerPacket} * content->frames,
                      content->samples.size() * sizeof(float))
                : 0;
    if (!content || bytes > std::numeric_limits<std::uint32_t>::max()) {
        Log::line("%s: %s", path.c_str(), content ? "too long for a file" : "no samples to write");
        return false;
    }
    const std::filesystem::path target = behindLinks(path);
    const std::string aside = AsideNames::beside(target.string());
    auto written = static_cast<std::uint32_t>(bytes);
    VornOutputAudioFile file(aside, kWaveFileType, m_myAudioDescription);
    file.writePackets(content->samples.data(), 0, &written, nullptr);
    const bool whole = file.close() == noErr && written == bytes;
    if (!whole || std::rename(aside.c_str(), target.c_str()) != 0) {
        if (whole)
            Log::line("%s: %s", path.c_str(), std::strerror(errno));
        ::unlink(aside.c_str());
        return false;
    }
    syncFolderOf(target.string());
    return true;
}

bool VornWave2::saveTo(const std::string& file, const std::string& folder) {
    if (!writeWavFile((std::filesystem::path(folder) / file).string()))
        return false;
    m_filename = file;
    m_residency = onDisk;
    return true;
}
