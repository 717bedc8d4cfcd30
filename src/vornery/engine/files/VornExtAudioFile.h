#pragma once

#include <cstdint>
#include <string>

#include "audiofiles/ExtAudioFile.h"

/// A sound file that is written from the audio thread: samples in the client format go through a
/// lock-free ring to a writer thread, which converts them to the file's format. A kill at any
/// instant loses at most the last second; a full disk ends the file where the space ended. Made,
/// primed and destroyed on an ordinary thread.
class VornExtAudioFile {
  public:
    /// How the writing goes. A file that could not be created has a problem from the start.
    using Report = ExtAudioFileReport;

    /// Creates the file at `path`, erasing what is there. Both formats start as the file's.
    VornExtAudioFile(const std::string& path, std::uint32_t fileType,
                     const StreamDescription& format);
    /// Closes the file.
    virtual ~VornExtAudioFile();
    VornExtAudioFile(const VornExtAudioFile&) = delete;
    VornExtAudioFile& operator=(const VornExtAudioFile&) = delete;

    /// What samples come in from now on.
    void setClientFormat(const StreamDescription& format);
    /// Must happen before the first write from the audio thread.
    void primeAsyncWriting();
    /// [render] Hands over `frames` frames in the client format; never waits. What the ring has no
    /// room for is dropped and counted, which is no error.
    OSStatus writeAsync(const AudioBufferList* data, std::uint32_t frames) noexcept;

    /// Writes what is still in the ring and completes the file, which is durable then. The last
    /// report. Nobody may be writing.
    Report close();

    const StreamDescription& fileFormat() const { return m_fileFormat; }
    const StreamDescription& clientFormat() const { return m_clientFormat; }
    bool asyncPrimed() const { return m_asyncPrimed; }
    /// [any thread but render; not while it is closed]
    Report report() const;

  private:
    /// Logs a failure; the first one is the problem.
    void keep(OSStatus status);

    ExtAudioFileRef m_file = nullptr;
    StreamDescription m_fileFormat;
    StreamDescription m_clientFormat;
    bool m_asyncPrimed = false;
    std::string m_path;
    Report m_report;  // what went wrong so far; of a closed file everything
};
