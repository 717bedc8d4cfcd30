#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "audiounits/AudioUnitTypes.h"

/// A sound file that is written from the audio thread: samples in the client format go through a
/// lock-free ring to a writer thread, which converts them to the file's format. A kill at any
/// instant loses at most the last second; a full disk ends the file where the space ended. Made,
/// primed and destroyed on an ordinary thread.
class VornExtAudioFile {
  public:
    /// How the writing goes.
    struct Report {
        std::uint64_t framesWritten = 0;
        std::uint64_t framesDropped = 0;  // the disk was too slow for them
        std::string problem;  // one line that names file and reason once nothing more is written
    };

    /// Creates the file at `path`, erasing what is there. Both formats start as the file's.
    VornExtAudioFile(const std::string& path, std::uint32_t fileType,
                     const StreamDescription& format);
    /// Writes what is still in the ring and closes the file, which is durable then.
    virtual ~VornExtAudioFile();
    VornExtAudioFile(const VornExtAudioFile&) = delete;
    VornExtAudioFile& operator=(const VornExtAudioFile&) = delete;

    /// What samples come in from now on.
    void setClientFormat(const StreamDescription& format);
    /// Must happen before the first write from the audio thread.
    void primeAsyncWriting();
    /// [render] Hands over `frames` frames in the client format; never waits. What the ring has no
    /// room for is dropped and counted, which is no error.
    OSStatus writeAsync(std::uint32_t frames, const AudioBufferList* data) noexcept;

    const StreamDescription& fileFormat() const;
    const StreamDescription& clientFormat() const;
    bool asyncPrimed() const;
    /// [any thread but render]
    Report report() const;

  private:
    struct State;
    std::unique_ptr<State> m_state;
};
