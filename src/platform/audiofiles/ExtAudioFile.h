#pragma once

#include <cstdint>
#include <string>

#include "audiofiles/AudioFile.h"
#include "audiounits/AudioUnitTypes.h"

/// The extended audio file service: writes a sound file from another format (the client's) than
/// its own, from the audio thread too. Throws nothing. Unless said otherwise: [any thread but
/// render; one thread at a time per file]
///
/// Once primed, what is handed over lies in the file 50 ms later and its header claims it, so that
/// nothing more is lost when the program is killed; a power cut may take a second or two. When the
/// disk is full or fails the writing ends: the file is valid and holds all that fitted, later
/// writes are quiet, and the report tells.

struct OpaqueExtAudioFile;
using ExtAudioFileRef = OpaqueExtAudioFile*;

/// Something was asked too late, or before asynchronous writing was primed.
inline constexpr OSStatus kExtAudioFileError_InvalidOperationOrder = -66567;

using ExtAudioFilePropertyID = std::uint32_t;
/// StreamDescription; read only.
inline constexpr ExtAudioFilePropertyID kExtAudioFileProperty_FileDataFormat = fourCC("ffmt");
/// StreamDescription: 16-bit integers or floats of one or two channels, at any rate. Until set it
/// is the file's; it cannot be set once writing is primed.
inline constexpr ExtAudioFilePropertyID kExtAudioFileProperty_ClientDataFormat = fourCC("cfmt");

/// Creates a file as AudioFileCreateWithURL does. `channelLayout` must be null. On failure *file is
/// null.
OSStatus ExtAudioFileCreateWithURL(const std::string& path, std::uint32_t fileType,
                                   const StreamDescription* format, const void* channelLayout,
                                   std::uint32_t flags, ExtAudioFileRef* file);

OSStatus ExtAudioFileSetProperty(ExtAudioFileRef file, ExtAudioFilePropertyID property,
                                 std::uint32_t size, const void* data);
/// *ioSize: room, then bytes written.
OSStatus ExtAudioFileGetProperty(ExtAudioFileRef file, ExtAudioFilePropertyID property,
                                 std::uint32_t* ioSize, void* data);

/// With no frames and no buffers, outside a render: primes the writing, which allocates a ring of
/// eight seconds at least and starts its threads. After that [render]: hands over `frames` frames
/// in the client format and never waits. What the ring has no room for is dropped and counted.
OSStatus ExtAudioFileWriteAsync(ExtAudioFileRef file, std::uint32_t frames,
                                const AudioBufferList* data) noexcept;

/// How the writing goes. Not the platform's.
struct ExtAudioFileReport {
    std::uint64_t framesWritten = 0;  // in the file, at its rate
    std::uint64_t framesDropped = 0;  // of the client: the disk was too slow for them
    std::string problem;  // one line that names file and reason once nothing more is written
};
/// [any thread but render; not while the file is finished or disposed of]
ExtAudioFileReport ExtAudioFileGetReport(ExtAudioFileRef file);

/// Writes what was handed over, completes the file and makes it durable. Not the platform's: the
/// report can be asked afterwards, all other calls fail. Nobody may be writing.
OSStatus ExtAudioFileFinish(ExtAudioFileRef file);

/// Finishes the file unless that was done. Returns the first failure of writing it.
OSStatus ExtAudioFileDispose(ExtAudioFileRef file);

/// The line of a report for a file of which `frames` frames were written at `rate`; empty for no
/// failure.
std::string extAudioFileProblem(const std::string& path, OSStatus status, std::uint64_t frames = 0,
                                double rate = 1);
