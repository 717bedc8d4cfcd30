#include "audiofiles/WavOutput.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "audiofiles/AudioFile.h"
#include "audiofiles/FileStatus.h"
#include "audiofiles/WavHeader.h"
#include "storage/WriteAll.h"

namespace {

constexpr mode_t kMode = 0666;

/// Never blocks: a pipe without a reader is refused at once.
int openAny(const std::string& path, int flags) {
    return open(path.c_str(), O_WRONLY | O_CREAT | O_NONBLOCK | O_CLOEXEC | O_NOCTTY | flags,
                kMode);
}

/// A regular file of no bytes.
FileHandle openEmpty(const std::string& path, bool erase, OSStatus* status) {
    FileHandle file(openAny(path, erase ? 0 : O_EXCL));
    struct stat info {};
    if (!file || fstat(file.get(), &info) != 0) {
        *status = errno == EEXIST ? kAudioFileExistsError : statusOfErrno(errno);
        return FileHandle();
    }
    if (!S_ISREG(info.st_mode)) {
        *status = kAudioFileNotRegularError;
        return FileHandle();
    }
    // Another name of the same file must keep what it holds.
    if (info.st_nlink > 1 && unlink(path.c_str()) == 0)
        file = FileHandle(openAny(path, O_EXCL));
    if (file && ftruncate(file.get(), 0) == 0)
        return file;
    *status = statusOfErrno(errno);
    return FileHandle();
}

}  // namespace

std::unique_ptr<WavOutput> WavOutput::create(const std::string& path,
                                             const StreamDescription& format, bool erase,
                                             OSStatus* status) {
    if (!WavHeader::supports(format)) {
        *status = kAudioFileUnsupportedDataFormatError;
        return nullptr;
    }
    FileHandle file = openEmpty(path, erase, status);
    if (!file)
        return nullptr;
    std::unique_ptr<WavOutput> output(new WavOutput(path, format, std::move(file)));
    *status = output->refreshHeader();
    if (*status == noErr)
        return output;
    unlink(path.c_str());
    return nullptr;
}

WavOutput::WavOutput(const std::string& path, const StreamDescription& format, FileHandle file)
    : m_path(path),
      m_format(format),
      m_file(std::move(file)),
      m_headerBytes(WavHeader(format, 0).bytes().size()) {}

OSStatus WavOutput::keep(OSStatus status) {
    if (m_status == noErr)
        m_status = status;
    return status;
}

std::size_t WavOutput::write(std::uint64_t at, const void* data, std::size_t bytes,
                             OSStatus* status) {
    const std::uint64_t most = WavHeader::maximumFrames(m_format) * frameBytes();
    const std::uint64_t room = most - std::min(at, most);
    const auto wanted = static_cast<std::size_t>(std::min<std::uint64_t>(bytes, room));
    const std::size_t written = writeAll(m_file.get(), data, wanted, m_headerBytes + at);
    if (written > 0)
        m_dataBytes = std::max(m_dataBytes, at + written);
    if (written < wanted)
        *status = keep(statusOfErrno(errno));
    else if (wanted < bytes)
        *status = keep(kAudioFileTooLargeError);
    return written;
}

OSStatus WavOutput::refreshHeader() {
    const WavHeader header(m_format, claimedFrames());
    const auto bytes = header.bytes();
    if (writeAll(m_file.get(), bytes.data(), bytes.size(), 0) == bytes.size())
        return noErr;
    return keep(statusOfErrno(errno));
}

void WavOutput::sync() const {
    fdatasync(m_file.get());
}

OSStatus WavOutput::close() {
    // A full disk may have taken part of a frame.
    const std::uint64_t whole = m_headerBytes + claimedFrames() * frameBytes();
    if (ftruncate(m_file.get(), static_cast<off_t>(whole)) != 0)
        keep(statusOfErrno(errno));
    refreshHeader();
    if (fsync(m_file.get()) != 0)
        keep(statusOfErrno(errno));
    m_file = FileHandle();
    syncFolderOf(m_path);
    return m_status;
}
