#pragma once

#include "files/VornAudioFile.h"

/// Four-character code of a WAV file.
inline constexpr std::uint32_t kWaveFileType = kAudioFileWAVEType;

/// A sound file that is written packet by packet. Failures are logged as "AU Error %d / %x"; see
/// `status` for the first one. [any thread but render; one thread at a time]
class VornOutputAudioFile : public VornAudioFile {
  public:
    /// Creates the file at `path`, erasing what is there.
    VornOutputAudioFile(const std::string& path, std::uint32_t fileType,
                        const StreamDescription& format);

    /// Writes the whole packets of *ioByteCount bytes at packet `startingPacket`; *ioByteCount
    /// becomes the bytes written. Returns the packets asked for, written or not.
    std::uint32_t writePackets(const void* buffer, std::uint32_t startingPacket,
                               std::uint32_t* ioByteCount,
                               const AudioStreamPacketDescription* descriptions);
    /// Writes *ioByteCount bytes at byte `startingByte` of the audio data.
    virtual bool writeBytes(const void* buffer, std::uint32_t* ioByteCount,
                            std::uint32_t startingByte);
    /// Completes the file, which the destructor does too, and makes it durable. Returns the first
    /// failure of this file's life.
    OSStatus close();

    /// Reading from an output file is an error of the program, which stops.
    bool ReadIntoBuffer(void* buffer, std::uint32_t* ioByteCount) override;

  private:
    /// True for success.
    bool keep(OSStatus status);
};
