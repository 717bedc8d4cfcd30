#include "audiofiles/AudioFile.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>

#include "audiofiles/SoundReader.h"

struct OpaqueAudioFile {
    std::unique_ptr<SoundReader> reader;
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

}  // namespace

OSStatus AudioFileOpenURL(const std::string& path, AudioFilePermissions, std::uint32_t,
                          AudioFileID* file) {
    *file = nullptr;
    return guarded([&] {
        OSStatus status = kAudioFileUnspecifiedError;
        if (auto reader = openSoundReader(path, &status)) {
            *file = new OpaqueAudioFile{std::move(reader)};
            return noErr;
        }
        return status;
    });
}

OSStatus AudioFileGetProperty(AudioFileID file, AudioFilePropertyID property, std::uint32_t* ioSize,
                              void* data) {
    if (!file)
        return kAudioFileNotOpenError;
    const SoundReader& reader = *file->reader;
    switch (property) {
        case kAudioFilePropertyDataFormat:
            return answer(reader.format(), ioSize, data);
        case kAudioFilePropertyAudioDataPacketCount:
            return answer(reader.claimedFrames(), ioSize, data);
        case kAudioFilePropertyAudioDataByteCount:
            return answer(reader.expectedFrames() * reader.frameBytes(), ioSize, data);
        case kAudioFilePropertyPacketSizeUpperBound:
            return answer(reader.frameBytes(), ioSize, data);
        default:
            return kAudioFileUnsupportedPropertyError;
    }
}

OSStatus AudioFileReadPackets(AudioFileID file, bool, std::uint32_t* outBytes,
                              AudioStreamPacketDescription* descriptions,
                              std::int64_t startingPacket, std::uint32_t* ioPackets, void* buffer) {
    const std::uint32_t wanted = *ioPackets;
    *ioPackets = *outBytes = 0;
    if (!file)
        return kAudioFileNotOpenError;
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
    if (!file) {
        *ioBytes = 0;
        return kAudioFileNotOpenError;
    }
    const std::uint32_t size = file->reader->frameBytes();
    const std::uint32_t wanted = *ioBytes / size;
    std::uint32_t packets = wanted;
    const OSStatus status = AudioFileReadPackets(file, useCache, ioBytes, nullptr,
                                                 startingByte / size, &packets, buffer);
    return status == noErr && packets < wanted ? kAudioFileEndOfFileError : status;
}

OSStatus AudioFileClose(AudioFileID file) {
    if (!file)
        return kAudioFileNotOpenError;
    delete file;
    return noErr;
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
