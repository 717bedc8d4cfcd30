#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "audiounits/AudioUnitTypes.h"
#include "storage/FileHandle.h"

/// A WAV file being written, with plain positioned writes. Whatever ends the program, the file is
/// valid and holds what it held when its header was last refreshed. [one thread at a time, but for
/// `sync`]
class WavOutput {
  public:
    /// The file gets its name when it is a valid file of no frames; what was there before is gone
    /// only then. Null and *status on failure. A link is followed.
    static std::unique_ptr<WavOutput> create(const std::string& path,
                                             const StreamDescription& format, bool erase,
                                             OSStatus* status);

    /// Writes at byte `at` of the audio data and returns the bytes written; fewer than asked set
    /// *status, as does the first failure before.
    std::size_t write(std::uint64_t at, const void* data, std::size_t bytes, OSStatus* status);
    /// Makes the header claim the whole frames that are there.
    OSStatus refreshHeader();
    /// [any thread but render] What is written so far survives a power cut.
    OSStatus sync() const;
    /// Completes the file, makes it durable and closes it. Returns the first failure of all.
    OSStatus close();

    const StreamDescription& format() const { return m_format; }
    std::uint32_t frameBytes() const { return m_format.mBytesPerFrame; }
    std::uint64_t claimedFrames() const { return m_dataBytes / frameBytes(); }
    std::uint64_t expectedFrames() const { return claimedFrames(); }

  private:
    WavOutput(const std::string& path, const StreamDescription& format, FileHandle file);
    OSStatus putName(const std::string& aside, bool replace);
    OSStatus keep(OSStatus status);

    std::string m_path;
    StreamDescription m_format;
    FileHandle m_file;
    std::uint64_t m_headerBytes;
    std::uint64_t m_dataBytes = 0;
    OSStatus m_status = noErr;  // the first failure
};
