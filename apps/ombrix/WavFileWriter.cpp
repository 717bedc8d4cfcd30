#include "WavFileWriter.h"

#include <fcntl.h>
#include <stdio.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <filesystem>

#include "audiounits/StreamDescription.h"

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kHeaderBytes = 44;
constexpr std::size_t kPendingFrames = 32768;

using Header = std::array<std::uint8_t, kHeaderBytes>;

void put(Header& header, std::size_t at, std::uint32_t value, int bytes) {
    for (int i = 0; i < bytes; ++i)
        header[at + static_cast<std::size_t>(i)] = static_cast<std::uint8_t>(value >> 8 * i);
}

// RIFF/WAVE with one "fmt " and one "data" chunk, all numbers little-endian.
Header wavHeader(std::uint64_t frames) {
    constexpr std::uint32_t kRate = static_cast<std::uint32_t>(kGraphRate);
    const auto dataBytes = static_cast<std::uint32_t>(frames * 2);
    Header header{};
    std::memcpy(&header[0], "RIFF", 4);
    put(header, 4, dataBytes + 36, 4);
    std::memcpy(&header[8], "WAVEfmt ", 8);
    put(header, 16, 16, 4);         // bytes of the format chunk
    put(header, 20, 1, 2);          // linear PCM
    put(header, 22, 1, 2);          // channels
    put(header, 24, kRate, 4);      // frames per second
    put(header, 28, kRate * 2, 4);  // bytes per second
    put(header, 32, 2, 2);          // bytes per frame
    put(header, 34, 16, 2);         // bits
    std::memcpy(&header[36], "data", 4);
    put(header, 40, dataBytes, 4);
    return header;
}

bool writeAll(int file, const void* data, std::size_t bytes, std::uint64_t offset) {
    const auto* from = static_cast<const char*>(data);
    while (bytes > 0) {
        const ssize_t written = pwrite(file, from, bytes, static_cast<off_t>(offset));
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            return false;
        from += written;
        offset += static_cast<std::uint64_t>(written);
        bytes -= static_cast<std::size_t>(written);
    }
    return true;
}

mode_t newFileMode() {
    const mode_t mask = umask(0);
    umask(mask);
    return 0666 & ~mask;
}

}  // namespace

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
    m_folder = (fs::absolute(m_path, missing)).parent_path().string();
    std::string pattern = m_folder + "/.ombrix-XXXXXX";
    m_file = mkostemp(pattern.data(), O_CLOEXEC);
    if (m_file < 0)
        return failure("write");
    m_temporary = pattern;
    m_offset = kHeaderBytes;
    m_pending.reserve(kPendingFrames);
    return "";
}

std::string WavFileWriter::write(std::span<const std::int16_t> frames) {
    if (m_frames + frames.size() > kMaximumFrames)
        return m_path + " would be longer than a WAV file can be; use --seconds";
    m_frames += frames.size();
    m_pending.insert(m_pending.end(), frames.begin(), frames.end());
    return m_pending.size() >= kPendingFrames ? flush() : "";
}

std::string WavFileWriter::flush() {
    const std::size_t bytes = m_pending.size() * sizeof(std::int16_t);
    if (!writeAll(m_file, m_pending.data(), bytes, m_offset))
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
    const Header header = wavHeader(m_frames);
    if (!writeAll(m_file, header.data(), header.size(), 0) || fchmod(m_file, newFileMode()) != 0 ||
        fsync(m_file) != 0)
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
    const int folder = ::open(m_folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (folder >= 0) {
        fsync(folder);
        ::close(folder);
    }
    return "";
}
