#include "WavFileWriter.h"

#include <fcntl.h>
#include <stdio.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>

#include "audiofiles/WavHeader.h"
#include "storage/AsideNames.h"
#include "storage/WriteAll.h"

namespace fs = std::filesystem;

namespace {

const StreamDescription kFormat = StreamDescription::sint16(1);
constexpr std::size_t kPendingFrames = 32768;

}  // namespace

std::uint64_t WavFileWriter::maximumFrames() {
    return WavHeader::maximumFrames(kFormat);
}

WavFileWriter::~WavFileWriter() {
    if (m_file >= 0)
        ::close(m_file);
    if (!m_temporary.empty())
        ::unlink(m_temporary.c_str());
}

std::string WavFileWriter::failure(const char* what) const {
    return std::string("cannot ") + what + " " + m_path + ": " + std::strerror(errno);
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
    return path + " exists already; --force replaces it";
}

std::string WavFileWriter::open(const std::string& path, bool replace) {
    if (std::string error = refusal(path, replace); !error.empty())
        return error;
    std::error_code missing;
    const fs::path target = fs::canonical(path, missing);  // the file itself, not a link to it
    m_path = missing ? path : target.string();
    m_replace = replace;
    AsideNames::sweep(fs::absolute(m_path, missing).parent_path().string());
    std::string aside;
    m_file = AsideNames::create(m_path, aside);
    if (m_file < 0)
        return failure("write");
    m_temporary = aside;
    m_offset = WavHeader(kFormat, 0).bytes().size();
    m_pending.reserve(kPendingFrames);
    return "";
}

std::string WavFileWriter::write(std::span<const std::int16_t> frames) {
    if (m_frames + frames.size() > maximumFrames())
        return m_path + " would be longer than a WAV file can be; use --seconds";
    m_frames += frames.size();
    m_pending.insert(m_pending.end(), frames.begin(), frames.end());
    return m_pending.size() >= kPendingFrames ? flush() : "";
}

std::string WavFileWriter::flush() {
    const std::size_t bytes = m_pending.size() * sizeof(std::int16_t);
    if (writeAll(m_file, m_pending.data(), bytes, m_offset) != bytes)
        return failure("write");
    m_offset += bytes;
    m_pending.clear();
    return "";
}

std::string WavFileWriter::finish() {
    for (const auto step :
         {&WavFileWriter::flush, &WavFileWriter::putHeader, &WavFileWriter::putName}) {
        if (std::string error = (this->*step)(); !error.empty())
            return error;
    }
    return "";
}

std::string WavFileWriter::putHeader() {
    const WavHeader header(kFormat, m_frames);
    const auto bytes = header.bytes();
    if (writeAll(m_file, bytes.data(), bytes.size(), 0) != bytes.size() || fsync(m_file) != 0)
        return failure("write");
    return "";
}

std::string WavFileWriter::putName() {
    // A file that came to be while we rendered is not replaced either.
    const unsigned flags = m_replace ? 0 : RENAME_NOREPLACE;
    int failed = renameat2(AT_FDCWD, m_temporary.c_str(), AT_FDCWD, m_path.c_str(), flags);
    if (failed && errno == EINVAL)  // a file system that cannot refuse to replace
        failed = rename(m_temporary.c_str(), m_path.c_str());
    if (failed)
        return failure("write");
    m_temporary.clear();
    syncFolderOf(m_path);
    return "";
}
