#pragma once

#include "audiofiles/FileHandle.h"
#include "audiofiles/SoundReader.h"

/// Files that the FFmpeg libraries decode: AAC and ALAC in M4A, CAF or raw frames, and their kin.
/// The libraries see the bytes of this one file only: demuxers and codecs are picked from a short
/// list, and nothing in the file can make them open another.
class FfmpegReader {
  public:
    static std::unique_ptr<SoundReader> open(FileHandle file, OSStatus* status);
};
