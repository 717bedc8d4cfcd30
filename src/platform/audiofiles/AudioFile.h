#pragma once

#include <cstdint>
#include <string>

#include "audiounits/AudioUnitTypes.h"

/// The audio file service: sound files of many kinds read, and WAV files written, as packets. All
/// calls return a status,
/// throw nothing and may block on the disk. [any thread but render; one thread at a time per file]
///
/// Files are recognised by their content, never by their name. Linear PCM is handed out as it
/// stands in the file: a packet is a frame. Every other kind is decoded on the way: its format
/// keeps the identifier of the codec and says 0 bytes per packet, since packets in the file vary;
/// what is read is still one frame a packet, interleaved native samples as the codec makes them
/// (bits and flags say which), encoder delay and padding cut off.

struct OpaqueAudioFile;
using AudioFileID = OpaqueAudioFile*;

inline constexpr OSStatus kAudioFileDiskFullError = -34;
inline constexpr OSStatus kAudioFileNameTooLongError = -37;
inline constexpr OSStatus kAudioFileNotOpenError = -38;
inline constexpr OSStatus kAudioFileEndOfFileError = -39;
inline constexpr OSStatus kAudioFileFileNotFoundError = -43;
inline constexpr OSStatus kAudioFileExistsError = -48;
inline constexpr OSStatus kAudioFileOutOfMemoryError = -108;
inline constexpr OSStatus kAudioFileOperationNotSupportedError =
    static_cast<OSStatus>(fourCC("op?\?"));
inline constexpr OSStatus kAudioFilePermissionsError = static_cast<OSStatus>(fourCC("prm?"));
inline constexpr OSStatus kAudioFileUnsupportedFileTypeError =
    static_cast<OSStatus>(fourCC("typ?"));
inline constexpr OSStatus kAudioFileUnsupportedDataFormatError =
    static_cast<OSStatus>(fourCC("fmt?"));
inline constexpr OSStatus kAudioFileUnsupportedPropertyError =
    static_cast<OSStatus>(fourCC("pty?"));
inline constexpr OSStatus kAudioFileBadPropertySizeError = static_cast<OSStatus>(fourCC("!siz"));
inline constexpr OSStatus kAudioFileInvalidFileError = static_cast<OSStatus>(fourCC("dta?"));
inline constexpr OSStatus kAudioFileUnspecifiedError = static_cast<OSStatus>(fourCC("wht?"));
// Not the platform's: what a path may lead to here, a library that is not installed, and what
// stops the writing.
inline constexpr OSStatus kAudioFileIsFolderError = static_cast<OSStatus>(fourCC("dir?"));
inline constexpr OSStatus kAudioFileNotRegularError = static_cast<OSStatus>(fourCC("reg?"));
inline constexpr OSStatus kAudioFileEmptyError = static_cast<OSStatus>(fourCC("emp?"));
inline constexpr OSStatus kAudioFileLibraryMissingError = static_cast<OSStatus>(fourCC("lib?"));
inline constexpr OSStatus kAudioFileReadOnlyError = static_cast<OSStatus>(fourCC("rof?"));
inline constexpr OSStatus kAudioFileTooLargeError = static_cast<OSStatus>(fourCC("4GB?"));

using AudioFilePropertyID = std::uint32_t;
/// StreamDescription.
inline constexpr AudioFilePropertyID kAudioFilePropertyDataFormat = fourCC("dfmt");
/// std::uint64_t: packets that the file claims to hold; 0 when it does not say. Reading may end
/// earlier, if the file does.
inline constexpr AudioFilePropertyID kAudioFilePropertyAudioDataPacketCount = fourCC("pcnt");
/// std::uint64_t: bytes of packets. For linear PCM never more than the file really has.
inline constexpr AudioFilePropertyID kAudioFilePropertyAudioDataByteCount = fourCC("bcnt");
/// std::uint32_t: bytes that no packet exceeds.
inline constexpr AudioFilePropertyID kAudioFilePropertyPacketSizeUpperBound = fourCC("pkub");

enum class AudioFilePermissions : std::int8_t { read = 1 };

/// Four-character code of a WAV file.
inline constexpr std::uint32_t kAudioFileWAVEType = fourCC("WAVE");

/// What becomes of a file that is there already.
inline constexpr std::uint32_t kAudioFileFlags_EraseFile = 1;

/// Where a packet of a varying format lies in the buffer that was read into.
struct AudioStreamPacketDescription {
    std::int64_t mStartOffset = 0;              // bytes
    std::uint32_t mVariableFramesInPacket = 0;  // 0: as the format says
    std::uint32_t mDataByteSize = 0;
};

/// Opens the file at `path`; `typeHint` is ignored. Folders, pipes and devices are refused without
/// waiting for them. On failure *file is null.
OSStatus AudioFileOpenURL(const std::string& path, AudioFilePermissions permissions,
                          std::uint32_t typeHint, AudioFileID* file);

/// *ioSize: room, then bytes written.
OSStatus AudioFileGetProperty(AudioFileID file, AudioFilePropertyID property, std::uint32_t* ioSize,
                              void* data);

/// Reads *ioPackets packets from `startingPacket`; *ioPackets becomes those read, fewer at the end,
/// and *outBytes their bytes. `descriptions` may be null. Reading on from where the last call ended
/// is quick. `useCache` is ignored: the system's own cache serves.
OSStatus AudioFileReadPackets(AudioFileID file, bool useCache, std::uint32_t* outBytes,
                              AudioStreamPacketDescription* descriptions,
                              std::int64_t startingPacket, std::uint32_t* ioPackets, void* buffer);

/// Reads *ioBytes bytes of audio data from byte `startingByte`, rounded down to a whole packet;
/// *ioBytes becomes those read. kAudioFileEndOfFileError when there were fewer.
OSStatus AudioFileReadBytes(AudioFileID file, bool useCache, std::int64_t startingByte,
                            std::uint32_t* ioBytes, void* buffer);

/// Creates a file of type "WAVE" whose data is packed, interleaved 16-bit integers or 32-bit floats
/// of one or two channels (of one channel "not interleaved" is the same). It is a valid file of no
/// frames at once. A file that is there already is erased with kAudioFileFlags_EraseFile, else
/// refused (-48); its other names (hard links) keep what it held. On failure *file is null and what
/// is there stays.
OSStatus AudioFileCreateWithURL(const std::string& path, std::uint32_t fileType,
                                const StreamDescription* format, std::uint32_t flags,
                                AudioFileID* file);

/// Writes *ioPackets packets at packet `startingPacket`; *ioPackets becomes those written. What is
/// skipped is silence.
OSStatus AudioFileWritePackets(AudioFileID file, bool useCache, std::uint32_t bytes,
                               const AudioStreamPacketDescription* descriptions,
                               std::int64_t startingPacket, std::uint32_t* ioPackets,
                               const void* buffer);

/// Writes *ioBytes bytes at byte `startingByte` of the audio data; *ioBytes becomes those written.
OSStatus AudioFileWriteBytes(AudioFileID file, bool useCache, std::int64_t startingByte,
                             std::uint32_t* ioBytes, const void* buffer);

/// A file that was written gets its header and is durable when this returns without a failure.
OSStatus AudioFileClose(AudioFileID file);

/// What to tell the user about a status of this service or of the converter, as the end of a
/// sentence that names the file: "is a folder".
const char* audioFileProblem(OSStatus status);
/// The same for a file that was to be written, and what to do: "cannot be written: the disk is
/// full; free some space".
const char* audioFileWriteProblem(OSStatus status);
