#pragma once

#include <cstdint>
#include <string>

#include "audiofiles/AudioFile.h"
#include "audiounits/StreamDescription.h"

/// A sound file that is read packet by packet. Failures are logged as "AU Error %d / %x" and turn
/// into false or 0; the object carries on. [any thread but render; one thread at a time]
class VornAudioFile {
  public:
    /// Opens the file at `path` for reading; see `status` for how that went.
    explicit VornAudioFile(const std::string& path);
    virtual ~VornAudioFile();
    VornAudioFile(const VornAudioFile&) = delete;
    VornAudioFile& operator=(const VornAudioFile&) = delete;

    /// Of opening the file (or of writing it): 0, or the first failing status of the service.
    OSStatus status() const { return m_status; }

    /// `into` becomes the default when there is no file.
    void dataFormat(StreamDescription* into) const;
    /// Packets that the file claims to hold; 0 when it does not say.
    std::uint64_t packetCount() const;
    std::uint64_t byteCount() const;
    /// Bytes per packet, or the upper bound of a format whose packets vary.
    std::uint32_t packetSize() const { return m_packetSize; }
    bool variablePackets() const { return m_variablePackets; }

    /// Reads as many packets from `startingPacket` as fit in *ioByteCount bytes; *ioByteCount
    /// becomes the bytes read. `descriptions` may be null. Returns the packets read, 0 on failure.
    std::uint32_t readPackets(void* buffer, std::uint32_t startingPacket,
                              std::uint32_t* ioByteCount,
                              AudioStreamPacketDescription* descriptions);

    /// Reads *ioByteCount bytes from the start of the audio data; *ioByteCount becomes those read.
    virtual bool ReadIntoBuffer(void* buffer, std::uint32_t* ioByteCount);

  protected:
    VornAudioFile() = default;

    AudioFileID m_file = nullptr;
    std::uint32_t m_packetSize = 0;
    bool m_variablePackets = false;
    OSStatus m_status = noErr;

  private:
    std::uint64_t number(AudioFilePropertyID property) const;
};
