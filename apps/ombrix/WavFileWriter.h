#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "storage/AsideFile.h"

/// Writes a 16-bit mono WAV file at 44100 Hz beside its final name and gives it that name only when
/// it is whole: whatever happens before, no half file is left and nothing that was there is lost.
/// Every call answers an error as one line that names file and reason; empty is success. [main]
class WavFileWriter {
  public:
    /// Most frames that the format's 32-bit sizes leave room for.
    static std::uint64_t maximumFrames();

    /// Why `path` may not be written: it is taken and not to be replaced, or is no regular file.
    static std::string refusal(const std::string& path, bool replace);

    [[nodiscard]] std::string open(const std::string& path, bool replace);
    [[nodiscard]] std::string write(std::span<const std::int16_t> frames);
    /// Completes the file, makes it durable and gives it its name.
    [[nodiscard]] std::string finish();

    std::uint64_t framesWritten() const { return m_frames; }

  private:
    std::string flush();
    std::string putName();

    std::optional<AsideFile> m_aside;  // goes with this object unless it got its name
    bool m_replace = false;
    std::uint64_t m_frames = 0;
    std::vector<std::int16_t> m_pending;
};
