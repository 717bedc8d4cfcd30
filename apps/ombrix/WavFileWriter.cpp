#include "WavFileWriter.h"

#include <filesystem>

#include "audiofiles/WavHeader.h"
#include "storage/AsideNames.h"

namespace fs = std::filesystem;

namespace {

const StreamDescription kFormat = StreamDescription::sint16(1);
constexpr std::size_t kPendingFrames = 32768;

std::string taken(const std::string& path) {
    return path + " exists already; --force replaces it";
}

}  // namespace

std::uint64_t WavFileWriter::maximumFrames() {
    return WavHeader::maximumFrames(kFormat);
}

std::string WavFileWriter::refusal(const std::string& path, bool replace) {
    std::error_code ignored;
    const fs::file_status status = fs::status(path, ignored);
    if (!fs::exists(status))
        return "";
    if (!fs::is_regular_file(status))
        return path + " is no regular file; give another --output";
    if (replace)
        return "";
    return taken(path);
}

std::string WavFileWriter::open(const std::string& path, bool replace) {
    if (std::string error = refusal(path, replace); !error.empty())
        return error;
    std::error_code ignored;
    AsideNames::sweep(fs::absolute(path, ignored).parent_path().string());
    m_replace = replace;
    m_aside.emplace(path);
    const WavHeader placeholder(kFormat, 0);
    m_aside->write(placeholder.bytes());
    m_pending.reserve(kPendingFrames);
    return m_aside->error();
}

std::string WavFileWriter::write(std::span<const std::int16_t> frames) {
    if (m_frames + frames.size() > maximumFrames())
        return m_aside->target() + " would be longer than a WAV file can be; use --seconds";
    m_frames += frames.size();
    m_pending.insert(m_pending.end(), frames.begin(), frames.end());
    return m_pending.size() >= kPendingFrames ? flush() : "";
}

std::string WavFileWriter::flush() {
    const std::span<const std::int16_t> pending(m_pending);
    m_aside->write({reinterpret_cast<const std::uint8_t*>(pending.data()), pending.size_bytes()});
    m_pending.clear();
    return m_aside->error();
}

std::string WavFileWriter::finish() {
    const WavHeader header(kFormat, m_frames);
    return flush().empty() && m_aside->overwrite(0, header.bytes()) ? putName() : m_aside->error();
}

std::string WavFileWriter::putName() {
    if (m_replace)
        m_aside->replaceTarget();
    else if (m_aside->putNew(m_aside->target()) == AsideFile::Put::taken)
        return taken(m_aside->target());  // it came to be while we rendered
    return m_aside->error();
}
