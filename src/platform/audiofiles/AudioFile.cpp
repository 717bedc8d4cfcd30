#include "audiofiles/AudioFile.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>
#include <vector>

#include "audiofiles/SoundReader.h"
#include "audiofiles/WavOutput.h"

/// One of the two: a file is read or written.
struct OpaqueAudioFile {
    std::unique_ptr<SoundReader> reader;
    std::unique_ptr<WavOutput> output;
};

namespace {

template <typename Work>
OSStatus guarded(Work work) noexcept {
    try {
        return work();
    } catch (const std::bad_alloc&) {
        return kAudioFileOutOfMemoryError;
    } catch (...) {
        return kAudioFileUnspecifiedError;
    }
}

template <typename Value>
OSStatus answer(const Value& value, std::uint32_t* ioSize, void* data) {
    if (*ioSize != sizeof(Value))
        return kAudioFileBadPropertySizeError;
    std::memcpy(data, &value, sizeof(Value));
    return noErr;
}

void describePackets(AudioStreamPacketDescription* descriptions, std::uint32_t count,
                     std::uint32_t bytes) {
    for (std::uint32_t i = 0; i < count; ++i)
        descriptions[i] = {std::int64_t{i} * bytes, 0, bytes};
}

/// The first `bytes` bytes of packet `at`, which is longer; returns those read.
std::uint32_t readStart(SoundReader& reader, std::uint64_t at, std::uint32_t bytes, void* into) {
    if (bytes == 0)
        return 0;
    std::vector<std::byte> packet(reader.frameBytes());
    if (reader.read(at, 1, packet.data()) == 0)
        return 0;
    std::memcpy(into, packet.data(), bytes);
    return bytes;
}

template <typename File>
OSStatus propertyOf(const File& file, AudioFilePropertyID property, std::uint32_t* ioSize,
                    void* data) {
    switch (property) {
        case kAudioFilePropertyDataFormat:
            return answer(file.format(), ioSize, data);
        case kAudioFilePropertyAudioDataPacketCount:
            return answer(file.claimedFrames(), ioSize, data);
        case kAudioFilePropertyAudioDataByteCount:
            return answer(file.expectedFrames() * file.frameBytes(), ioSize, data);
        case kAudioFilePropertyPacketSizeUpperBound:
            return answer(file.frameBytes(), ioSize, data);
        default:
            return kAudioFileUnsupportedPropertyError;
    }
}

}  // namespace

OSStatus AudioFileOpenURL(const std::string& path, AudioFilePermissions, std::uint32_t,
                          AudioFileID* file) {
    *file = nullptr;
    return guarded([&] {
        OSStatus status = kAudioFileUnspecifiedError;
        if (auto reader = openSoundReader(path, &status)) {
            *file = new OpaqueAudioFile{std::move(reader), nullptr};
            return noErr;
        }
        return status;
    });
}

OSStatus AudioFileGetProperty(AudioFileID file, AudioFilePropertyID property, std::uint32_t* ioSize,
                              void* data) {
    if (!file)
        return kAudioFileNotOpenError;
    return file->reader ? propertyOf(*file->reader, property, ioSize, data)
                        : propertyOf(*file->output, property, ioSize, data);
}

OSStatus AudioFileReadPackets(AudioFileID file, bool, std::uint32_t* outBytes,
                              AudioStreamPacketDescription* descriptions,
                              std::int64_t startingPacket, std::uint32_t* ioPackets, void* buffer) {
    const std::uint32_t wanted = *ioPackets;
    *ioPackets = *outBytes = 0;
    if (!file)
        return kAudioFileNotOpenError;
    if (!file->reader)
        return kAudioFileOperationNotSupportedError;
    if (startingPacket < 0)
        return kAudio_ParamError;
    return guarded([&] {
        SoundReader& reader = *file->reader;
        const std::uint32_t room = std::numeric_limits<std::uint32_t>::max() / reader.frameBytes();
        const std::uint32_t packets =
            reader.read(static_cast<std::uint64_t>(startingPacket), std::min(wanted, room),
                        static_cast<std::byte*>(buffer));
        if (descriptions)
            describePackets(descriptions, packets, reader.frameBytes());
        *outBytes = packets * reader.frameBytes();
        *ioPackets = packets;
        return noErr;
    });
}

OSStatus AudioFileReadBytes(AudioFileID file, bool useCache, std::int64_t startingByte,
                            std::uint32_t* ioBytes, void* buffer) {
    if (!file || !file->reader) {
        *ioBytes = 0;
        return file ? kAudioFileOperationNotSupportedError : kAudioFileNotOpenError;
    }
    const std::uint32_t size = file->reader->frameBytes();
    const std::uint32_t wanted = *ioBytes;
    std::uint32_t packets = wanted / size;
    const OSStatus status = AudioFileReadPackets(file, useCache, ioBytes, nullptr,
                                                 startingByte / size, &packets, buffer);
    if (status != noErr || packets < wanted / size)
        return status == noErr ? kAudioFileEndOfFileError : status;
    return guarded([&] {
        *ioBytes +=
            readStart(*file->reader, static_cast<std::uint64_t>(startingByte / size) + packets,
                      wanted % size, static_cast<std::byte*>(buffer) + *ioBytes);
        return *ioBytes < wanted ? kAudioFileEndOfFileError : noErr;
    });
}

OSStatus AudioFileCreateWithURL(const std::string& path, std::uint32_t fileType,
                                const StreamDescription* format, std::uint32_t flags,
                                AudioFileID* file) {
    *file = nullptr;
    if (fileType != kAudioFileWAVEType)
        return kAudioFileUnsupportedFileTypeError;
    return guarded([&] {
        OSStatus status = kAudioFileUnspecifiedError;
        const bool erase = (flags & kAudioFileFlags_EraseFile) != 0;
        if (auto output = WavOutput::create(path, *format, erase, &status)) {
            *file = new OpaqueAudioFile{nullptr, std::move(output)};
            return noErr;
        }
        return status;
    });
}

OSStatus AudioFileWriteBytes(AudioFileID file, bool, std::int64_t startingByte,
                             std::uint32_t* ioBytes, const void* buffer) {
    const std::uint32_t wanted = *ioBytes;
    *ioBytes = 0;
    if (!file)
        return kAudioFileNotOpenError;
    if (!file->output)
        return kAudioFileOperationNotSupportedError;
    if (startingByte < 0)
        return kAudio_ParamError;
    OSStatus status = noErr;
    *ioBytes = static_cast<std::uint32_t>(
        file->output->write(static_cast<std::uint64_t>(startingByte), buffer, wanted, &status));
    return status;
}

OSStatus AudioFileWritePackets(AudioFileID file, bool useCache, std::uint32_t bytes,
                               const AudioStreamPacketDescription*, std::int64_t startingPacket,
                               std::uint32_t* ioPackets, const void* buffer) {
    const std::uint32_t wanted = *ioPackets;
    *ioPackets = 0;
    if (!file)
        return kAudioFileNotOpenError;
    if (!file->output)
        return kAudioFileOperationNotSupportedError;
    const std::uint32_t size = file->output->frameBytes();
    if (startingPacket < 0 || startingPacket > std::numeric_limits<std::int64_t>::max() / size ||
        wanted > bytes / size)
        return kAudio_ParamError;
    std::uint32_t written = wanted * size;
    const OSStatus status =
        AudioFileWriteBytes(file, useCache, startingPacket * size, &written, buffer);
    *ioPackets = written / size;
    return status;
}

OSStatus AudioFileClose(AudioFileID file) {
    if (!file)
        return kAudioFileNotOpenError;
    const OSStatus status = file->output ? file->output->close() : noErr;
    delete file;
    return status;
}

const char* audioFileProblem(OSStatus status) {
    switch (status) {
        case kAudioFileFileNotFoundError:
            return "does not exist";
        case kAudioFilePermissionsError:
            return "cannot be read: permission denied";
        case kAudioFileIsFolderError:
            return "is a folder, not a sound file";
        case kAudioFileNotRegularError:
            return "is a pipe or a device, not a sound file";
        case kAudioFileEmptyError:
            return "is empty";
        case kAudioFileUnsupportedFileTypeError:
            return "is not a sound file of a known kind";
        case kAudioFileUnsupportedDataFormatError:
            return "is coded in a way that is not supported";
        case kAudioFileInvalidFileError:
            return "is damaged: no sound could be read from it";
        case kAudioFileLibraryMissingError:
            return "needs the FFmpeg libraries (libavformat, libswresample), which are missing "
                   "here";
        case kAudioFileOutOfMemoryError:
            return "is too large for the memory of this computer";
        default:
            return "cannot be read";
    }
}

const char* audioFileWriteProblem(OSStatus status) {
    switch (status) {
        case kAudioFileFileNotFoundError:
            return "cannot be written: its folder does not exist; make the folder or choose "
                   "another";
        case kAudioFilePermissionsError:
            return "cannot be written: permission denied; choose a folder that you may write to";
        case kAudioFileReadOnlyError:
            return "cannot be written: the disk is read-only; choose a folder on another";
        case kAudioFileIsFolderError:
            return "is a folder; choose another name";
        case kAudioFileNotRegularError:
            return "is a pipe or a device; choose another name";
        case kAudioFileNameTooLongError:
            return "cannot be written: the name is too long; choose a shorter one";
        case kAudioFileExistsError:
            return "exists already; choose another name";
        case kAudioFileDiskFullError:
            return "cannot be written: the disk is full; free some space";
        case kAudioFileTooLargeError:
            return "cannot grow beyond 4 GiB, the most that a WAV file holds; begin another";
        case kAudioFileUnsupportedFileTypeError:
        case kAudioFileUnsupportedDataFormatError:
            return "cannot be written: only WAV files of 16-bit integers or 32-bit floats, mono "
                   "or stereo, can";
        case kAudioFileLibraryMissingError:
            return "cannot be written at another rate: the FFmpeg library libswresample is "
                   "missing here";
        case kAudioFileOutOfMemoryError:
            return "cannot be written: too little memory is left; end other programs";
        default:
            return "cannot be written: the disk reports an error; choose a folder on another";
    }
}
