#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "audiounits/AudioUnitTypes.h"

/// One open sound file inside the audio file service, whatever library reads it. Packets are
/// frames (see AudioFile.h). May throw; the service catches. [one thread at a time]
class SoundReader {
  public:
    virtual ~SoundReader() = default;

    /// Reads up to `frames` frames from frame `at`; returns those read, fewer at the end.
    virtual std::uint32_t read(std::uint64_t at, std::uint32_t frames, std::byte* into) = 0;

    const StreamDescription& format() const { return m_format; }
    std::uint32_t frameBytes() const { return m_format.mBytesPerFrame; }
    /// What the header claims; 0 when it does not say.
    std::uint64_t claimedFrames() const { return m_claimedFrames; }
    /// Frames to be expected: no more than claimed, nor than the file has room for.
    std::uint64_t expectedFrames() const { return m_expectedFrames; }

  protected:
    /// Frames decoded from codec `formatID`: native samples of `bits` bits, floats or signed
    /// integers as `flags` says.
    static StreamDescription decodedFormat(std::uint32_t formatID, double rate,
                                           std::uint32_t channels, std::uint32_t bits,
                                           std::uint32_t flags);

    StreamDescription m_format;
    std::uint64_t m_claimedFrames = 0;
    std::uint64_t m_expectedFrames = 0;
};

/// Opens the sound file at `path` with the library that knows it. Null and *status on failure.
std::unique_ptr<SoundReader> openSoundReader(const std::string& path, OSStatus* status);
