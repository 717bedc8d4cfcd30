#pragma once

#include <cstdint>
#include <memory>

#include "audiofiles/FfmpegLibraries.h"
#include "audiounits/AudioUnitTypes.h"

/// One pass of the FFmpeg libraries over the first sound in a file, from its start to its end.
class FfmpegDecoder {
  public:
    /// `descriptor` stays the caller's and must outlive this. Null and *status on failure.
    static std::unique_ptr<FfmpegDecoder> open(int descriptor, OSStatus* status);
    ~FfmpegDecoder();

    /// Decodes on; false at the end. Packets that cannot be decoded are passed over.
    bool next();
    /// What `next` has decoded, encoder delay taken off where the container states it.
    const AVFrame& frame() const { return *m_frame; }

    AVCodecID codec() const { return m_codec->codec_id; }
    /// Bits of a sample in the file, of linear PCM; 0 for everything else.
    std::uint32_t pcmBits() const;
    /// Of the stream as its container states it, at `rate` frames per second; 0 when it does not.
    std::uint64_t statedFrames(int rate) const;

  private:
    FfmpegDecoder(int descriptor, const DecodeFunctions& ffmpeg);
    OSStatus openFormat();
    OSStatus openCodec();
    void feed();

    static int readBytes(void* self, std::uint8_t* into, int bytes);
    static std::int64_t seekTo(void* self, std::int64_t offset, int whence);
    static int refuseToOpen(AVFormatContext*, AVIOContext**, const char*, int, AVDictionary**);

    const DecodeFunctions& m_ffmpeg;
    int m_descriptor;
    std::int64_t m_offset = 0;  // bytes
    AVIOContext* m_io = nullptr;
    AVFormatContext* m_format = nullptr;
    AVStream* m_stream = nullptr;
    AVCodecContext* m_codec = nullptr;
    AVPacket* m_packet = nullptr;
    AVFrame* m_frame = nullptr;
};
