#include "audiofiles/WavOutput.h"

#include <fcntl.h>
#include <stdio.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>

#include "audiofiles/AudioFile.h"
#include "audiofiles/FileStatus.h"
#include "audiofiles/WavHeader.h"
#include "storage/AsideNames.h"
#include "storage/WriteAll.h"

namespace {

namespace fs = std::filesystem;

/// One channel has nothing to interleave, so either flag means the same.
StreamDescription asInFile(StreamDescription format) {
    if (format.mChannelsPerFrame == 1)
        format.mFormatFlags &= ~kAudioFormatFlagIsNonInterleaved;
    return format;
}

/// What a regular file's place does not allow: noErr when a file may be put there.
OSStatus refusal(const std::string& path, bool erase) {
    struct stat info {};
    if (stat(path.c_str(), &info) != 0)
        return errno == ENOENT ? noErr : statusOfErrno(errno);
    if (S_ISDIR(info.st_mode))
        return kAudioFileIsFolderError;
    if (!S_ISREG(info.st_mode))
        return kAudioFileNotRegularError;
    if (!erase)
        return kAudioFileExistsError;
    return access(path.c_str(), W_OK) == 0 ? noErr : statusOfErrno(errno);
}

/// The file behind a link, so that a linked file is replaced and not the link.
std::string behindLinks(const std::string& path) {
    std::error_code missing;
    const fs::path real = fs::canonical(path, missing);
    return missing ? path : real.string();
}

}  // namespace

std::unique_ptr<WavOutput> WavOutput::create(const std::string& path,
                                             const StreamDescription& stated, bool erase,
                                             OSStatus* status) {
    const StreamDescription format = asInFile(stated);
    if (!WavHeader::supports(format)) {
        *status = kAudioFileUnsupportedDataFormatError;
        return nullptr;
    }
    *status = refusal(path, erase);
    if (*status != noErr)
        return nullptr;
    const std::string target = behindLinks(path);
    std::string aside;
    FileHandle file(AsideNames::create(target, aside));
    if (!file) {
        *status = statusOfErrno(errno);
        return nullptr;
    }
    std::unique_ptr<WavOutput> output(new WavOutput(target, format, std::move(file)));
    *status = output->refreshHeader();
    if (*status == noErr)
        *status = output->putName(aside, erase);
    if (*status == noErr)
        return output;
    unlink(aside.c_str());
    return nullptr;
}

WavOutput::WavOutput(const std::string& path, const StreamDescription& format, FileHandle file)
    : m_path(path),
      m_format(format),
      m_file(std::move(file)),
      m_headerBytes(WavHeader(format, 0).bytes().size()) {}

OSStatus WavOutput::putName(const std::string& aside, bool replace) {
    struct stat old {};
    if (stat(m_path.c_str(), &old) == 0)
        fchmod(m_file.get(), old.st_mode & 07777);
    int failed = renameat2(AT_FDCWD, aside.c_str(), AT_FDCWD, m_path.c_str(),
                           replace ? 0 : RENAME_NOREPLACE);
    if (failed && errno == EINVAL)  // a file system that cannot refuse to replace
        failed = rename(aside.c_str(), m_path.c_str());
    return failed ? statusOfErrno(errno) : noErr;
}

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

OSStatus WavOutput::sync() const {
    if (fdatasync(m_file.get()) != 0)
        return statusOfErrno(errno);
    syncFolderOf(m_path);
    return noErr;
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
