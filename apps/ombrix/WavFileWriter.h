#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

/// Writes a 16-bit mono WAV file at 44100 Hz beside its final name and gives it that name only when
/// it is whole: whatever happens before, no half file is left and nothing that was there is lost.
/// Every call answers an error as one line that names file and reason; empty is success. [main]
class WavFileWriter {
  public:
    /// Most frames that the format's 32-bit sizes leave room for.
    static std::uint64_t maximumFrames();

    WavFileWriter() = default;
    /// Removes an unfinished file.
    ~WavFileWriter();
    WavFileWriter(const WavFileWriter&) = delete;
    WavFileWriter& operator=(const WavFileWriter&) = delete;

    /// Why `path` may not be written: it is taken and not to be replaced, or is no regular file.
    static std::string refusal(const std::string& path, bool replace);

    [[nodiscard]] std::string open(const std::string& path, bool replace);
    [[nodiscard]] std::string write(std::span<const std::int16_t> frames);
    /// Completes the file, makes it durable and gives it its name.
    [[nodiscard]] std::string finish();

    std::uint64_t framesWritten() const { return m_frames; }

  private:
    std::string flush();
    std::string failure(const char* what) const;
    std::string putHeader();
    std::string putName();

    std::string m_path;       // final
    std::string m_temporary;  // beside it; empty when there is nothing to remove
    bool m_replace = false;
    int m_file = -1;
    std::uint64_t m_frames = 0;
    std::uint64_t m_offset = 0;  // bytes in the file so far
    std::vector<std::int16_t> m_pending;
};
