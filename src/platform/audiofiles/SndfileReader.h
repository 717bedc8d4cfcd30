#pragma once

#include "audiofiles/SoundReader.h"

struct sf_private_tag;

/// Files that libsndfile reads: linear PCM of any depth and byte order as it stands, and decoded:
/// FLAC, Ogg, the older codecs of WAV and AIFF.
class SndfileReader : public SoundReader {
  public:
    /// `descriptor` stays the caller's. Null and *status when libsndfile does not know the file.
    static std::unique_ptr<SoundReader> open(int descriptor, OSStatus* status);
    ~SndfileReader() override;

    std::uint32_t read(std::uint64_t at, std::uint32_t frames, std::byte* into) override;

  private:
    explicit SndfileReader(sf_private_tag* file) : m_file(file) {}
    std::uint32_t readOn(std::uint32_t frames, std::byte* into);

    sf_private_tag* m_file;
    std::uint64_t m_position = 0;  // frames
    bool m_decodes = false;
};
