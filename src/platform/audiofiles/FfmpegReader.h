#pragma once

#include <vector>

#include "audiofiles/FfmpegDecoder.h"
#include "audiofiles/SoundReader.h"
#include "storage/FileHandle.h"

/// Files that the FFmpeg libraries decode: AAC and ALAC in M4A, CAF or bare frames, and their kin;
/// linear PCM in containers too broken for others, a CAF file cut short for one.
/// The libraries see the bytes of this one file only: demuxers and codecs are picked from a short
/// list, and nothing in the file can make them open another.
///
/// Encoder delay is left out, and the end is cut where the container says that the sound ends;
/// lossless codecs end by themselves.
class FfmpegReader : public SoundReader {
  public:
    static std::unique_ptr<SoundReader> open(FileHandle file, OSStatus* status);

    std::uint32_t read(std::uint64_t at, std::uint32_t frames, std::byte* into) override;

  private:
    explicit FfmpegReader(FileHandle file) : m_file(std::move(file)) {}
    OSStatus start();
    void describe();
    void describePcm();
    bool decodeOn();
    bool skip(std::uint64_t frames);
    std::uint32_t take(std::uint64_t frames, std::byte* into);

    FileHandle m_file;
    std::unique_ptr<FfmpegDecoder> m_decoder;
    int m_sampleFormat = 0;           // the library's own
    bool m_pending = false;           // the decoder's frame has not been taken over yet
    std::uint64_t m_readyFrames = 0;  // of the decoder's frame; the first m_taken are gone
    std::uint64_t m_taken = 0;
    std::uint64_t m_position = 0;  // frames handed out
    std::uint64_t m_delay = 0;     // frames to leave out first, beyond what the library leaves out
    std::uint64_t m_toSkip = 0;    // of which these are still to come
    std::uint64_t m_end = 0;       // frames handed out at most
};
