#include "audiofiles/SoundReader.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <string_view>

#include "audiofiles/AudioFile.h"
#include "audiofiles/FfmpegReader.h"
#include "audiofiles/FileStatus.h"
#include "audiofiles/SndfileReader.h"
#include "storage/FileHandle.h"

namespace {

using Head = std::array<char, 16>;

/// Never blocks: a pipe without a writer opens at once and is refused by its kind.
FileHandle openRegularFile(const std::string& path, OSStatus* status) {
    FileHandle file(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY));
    struct stat info {};
    if (!file || fstat(file.get(), &info) != 0)
        *status = statusOfErrno(errno);
    else if (S_ISDIR(info.st_mode))
        *status = kAudioFileIsFolderError;
    else if (!S_ISREG(info.st_mode))
        *status = kAudioFileNotRegularError;
    else if (info.st_size == 0)
        *status = kAudioFileEmptyError;
    else
        return file;
    return FileHandle();
}

bool startsWithOneOf(std::string_view text, std::initializer_list<std::string_view> words) {
    for (std::string_view word : words)
        if (text.substr(0, word.size()) == word)
            return true;
    return false;
}

// MPEG audio and AAC frames start with eleven set bits.
bool isFrameSync(std::string_view head) {
    return static_cast<unsigned char>(head[0]) == 0xff && (head[1] & 0xe0) == 0xe0;
}

// Not MP3, which it reads too: its decoder writes notes about damaged files to stderr.
bool knownToSndfile(std::string_view head) {
    return startsWithOneOf(
        head, {"RIFF", "RIFX", "RF64", "riff", "FORM", "caff", "fLaC", "OggS", ".snd"});
}

bool knownToFfmpeg(std::string_view head) {
    return startsWithOneOf(head.substr(4), {"ftyp", "moov", "mdat", "wide", "free", "skip"}) ||
           startsWithOneOf(head, {"RIFF", "FORM", "caff", "OggS", "ID3"}) || isFrameSync(head);
}

}  // namespace

StreamDescription SoundReader::decodedFormat(std::uint32_t formatID, double rate,
                                             std::uint32_t channels, std::uint32_t bits,
                                             std::uint32_t flags) {
    StreamDescription format;
    format.mSampleRate = rate;
    format.mFormatID = formatID;
    format.mFormatFlags = flags | kAudioFormatFlagIsPacked;
    format.mBytesPerPacket = 0;
    format.mFramesPerPacket = 1;
    format.mBytesPerFrame = bits / 8 * channels;
    format.mChannelsPerFrame = channels;
    format.mBitsPerChannel = bits;
    return format;
}

std::unique_ptr<SoundReader> openSoundReader(const std::string& path, OSStatus* status) {
    FileHandle file = openRegularFile(path, status);
    if (!file)
        return nullptr;
    Head bytes{};
    if (pread(file.get(), bytes.data(), bytes.size(), 0) < 0) {
        *status = statusOfErrno(errno);
        return nullptr;
    }
    const std::string_view head(bytes.data(), bytes.size());
    *status = kAudioFileUnsupportedFileTypeError;
    if (knownToSndfile(head))
        if (auto reader = SndfileReader::open(file.get(), status))
            return reader;
    if (!knownToFfmpeg(head))
        return nullptr;
    OSStatus second = noErr;
    auto reader = FfmpegReader::open(std::move(file), &second);
    // Where both refuse, the one that knew the kind of file tells more.
    if (*status == kAudioFileUnsupportedFileTypeError || second != kAudioFileInvalidFileError)
        *status = second;
    return reader;
}
