#include "audiofiles/FfmpegReader.h"

#include <sys/stat.h>

#include <algorithm>
#include <cstring>
#include <limits>
#include <optional>
#include <utility>

#include "audiofiles/AudioFile.h"
#include "audiofiles/CafPacketTable.h"
#include "audiofiles/PcmClaim.h"

namespace {

constexpr std::uint64_t kNoEnd = std::numeric_limits<std::uint64_t>::max();

std::uint32_t codecID(AVCodecID codec) {
    switch (codec) {
        case AV_CODEC_ID_AAC:
            return fourCC("aac ");
        case AV_CODEC_ID_ALAC:
            return fourCC("alac");
        case AV_CODEC_ID_MP3:
            return fourCC(".mp3");
        case AV_CODEC_ID_FLAC:
            return fourCC("flac");
        case AV_CODEC_ID_OPUS:
            return fourCC("opus");
        default:
            return fourCC("ffmp");
    }
}

std::uint32_t channelsOf(const AVFrame& frame) {
    return static_cast<std::uint32_t>(std::max(frame.ch_layout.nb_channels, 0));
}

struct SampleKind {
    std::uint32_t bits;
    std::uint32_t flags;
};

/// None for a sample format that is not known.
std::optional<SampleKind> sampleKind(int format) {
    switch (format) {
        case AV_SAMPLE_FMT_U8:
        case AV_SAMPLE_FMT_U8P:
            return SampleKind{8, 0};
        case AV_SAMPLE_FMT_S16:
        case AV_SAMPLE_FMT_S16P:
            return SampleKind{16, kAudioFormatFlagIsSignedInteger};
        case AV_SAMPLE_FMT_S32:
        case AV_SAMPLE_FMT_S32P:
            return SampleKind{32, kAudioFormatFlagIsSignedInteger};
        case AV_SAMPLE_FMT_FLT:
        case AV_SAMPLE_FMT_FLTP:
            return SampleKind{32, kAudioFormatFlagIsFloat};
        case AV_SAMPLE_FMT_DBL:
        case AV_SAMPLE_FMT_DBLP:
            return SampleKind{64, kAudioFormatFlagIsFloat};
        default:
            return std::nullopt;
    }
}

bool isPlanar(int format) {
    return format == AV_SAMPLE_FMT_U8P || format == AV_SAMPLE_FMT_S16P ||
           format == AV_SAMPLE_FMT_S32P || format == AV_SAMPLE_FMT_FLTP ||
           format == AV_SAMPLE_FMT_DBLP;
}

/// Samples [from, from + frames) of a frame.
struct Piece {
    const AVFrame& frame;
    std::size_t from, frames;
    template <typename Word>
    const Word* plane(std::size_t channel) const {
        return reinterpret_cast<const Word*>(frame.extended_data[channel]) + from;
    }
};

template <typename Word>
void interleave(const Piece& piece, std::size_t channels, std::byte* into) {
    auto* __restrict out = reinterpret_cast<Word*>(into);
    if (channels == 2) {  // in one go, many at once
        const Word *left = piece.plane<Word>(0), *right = piece.plane<Word>(1);
        for (std::size_t i = 0; i < piece.frames; ++i) {
            out[2 * i] = left[i];
            out[2 * i + 1] = right[i];
        }
        return;
    }
    for (std::size_t c = 0; c < channels; ++c)
        for (std::size_t i = 0; i < piece.frames; ++i)
            out[i * channels + c] = piece.plane<Word>(c)[i];
}

/// Copies samples; in planes or not, they come out interleaved.
void copySamples(const Piece& piece, std::uint32_t channels, std::uint32_t bits, std::byte* into) {
    const std::size_t frameBytes = std::size_t{channels} * (bits / 8);
    if (!isPlanar(piece.frame.format) || channels == 1)
        std::memcpy(into, piece.frame.extended_data[0] + piece.from * frameBytes,
                    piece.frames * frameBytes);
    else if (bits == 8)
        interleave<std::uint8_t>(piece, channels, into);
    else if (bits == 16)
        interleave<std::uint16_t>(piece, channels, into);
    else if (bits == 32)
        interleave<std::uint32_t>(piece, channels, into);
    else
        interleave<std::uint64_t>(piece, channels, into);
}

}  // namespace

std::unique_ptr<SoundReader> FfmpegReader::open(FileHandle file, OSStatus* status) {
    std::unique_ptr<FfmpegReader> reader(new FfmpegReader(std::move(file)));
    *status = reader->start();
    if (*status != noErr)
        return nullptr;
    reader->describe();
    return reader;
}

/// Decodes the first frame, which alone says for certain what the stream holds.
OSStatus FfmpegReader::start() {
    OSStatus status = noErr;
    m_decoder = FfmpegDecoder::open(m_file.get(), &status);
    m_readyFrames = m_taken = m_position = 0;
    m_toSkip = m_delay;
    if (status != noErr)
        return status;
    m_pending = m_decoder->next();
    const AVFrame& frame = m_decoder->frame();
    const bool sane =
        m_pending && channelsOf(frame) > 0 && frame.sample_rate > 0 && sampleKind(frame.format);
    return sane ? noErr : kAudioFileInvalidFileError;
}

void FfmpegReader::describe() {
    const AVFrame& frame = m_decoder->frame();
    const AVCodecID codec = m_decoder->codec();
    const SampleKind kind = *sampleKind(frame.format);
    m_sampleFormat = frame.format;
    m_format =
        decodedFormat(codecID(codec), frame.sample_rate, channelsOf(frame), kind.bits, kind.flags);
    m_claimedFrames = m_decoder->statedFrames(frame.sample_rate);
    // What is stated for a lossless stream may be rounded up to whole packets.
    const bool lossless = codec == AV_CODEC_ID_ALAC || codec == AV_CODEC_ID_FLAC;
    m_end = lossless || m_claimedFrames == 0 ? kNoEnd : m_claimedFrames;
    if (const auto table = readCafPacketTable(m_file.get())) {
        m_delay = m_toSkip = table->primingFrames;
        m_end = m_claimedFrames = table->validFrames;
    }
    m_expectedFrames = m_claimedFrames;
    if (m_decoder->pcmBits() > 0)
        describePcm();
}

void FfmpegReader::describePcm() {
    const std::uint32_t fileFrameBytes = m_decoder->pcmBits() * m_format.mChannelsPerFrame / 8;
    struct stat info {};
    if (fstat(m_file.get(), &info) != 0 || fileFrameBytes == 0)
        return;
    m_end = kNoEnd;
    if (const auto claim = readPcmClaim(m_file.get()); claim.bytes)
        m_claimedFrames = *claim.bytes / fileFrameBytes;
    m_expectedFrames =
        std::min(m_claimedFrames, static_cast<std::uint64_t>(info.st_size) / fileFrameBytes);
    // What the codec hands on as it stands is plain PCM, and may be taken as that.
    const AVCodecID codec = m_decoder->codec();
    if (codec == AV_CODEC_ID_PCM_S16LE || codec == AV_CODEC_ID_PCM_F32LE) {
        m_format.mFormatID = kAudioFormatLinearPCM;
        m_format.mBytesPerPacket = frameBytes();
    }
}

/// Makes the decoder's next frame ready. False at the end.
bool FfmpegReader::decodeOn() {
    m_readyFrames = m_taken = 0;
    if (!m_pending && !m_decoder->next())
        return false;
    m_pending = false;
    const AVFrame& frame = m_decoder->frame();
    if (frame.format != m_sampleFormat || channelsOf(frame) != m_format.mChannelsPerFrame ||
        frame.sample_rate != static_cast<int>(m_format.mSampleRate))
        return false;  // a stream that changes on the way ends there
    m_readyFrames = static_cast<std::uint64_t>(frame.nb_samples);
    return true;
}

/// Moves up to `frames` ready frames out, to `into` unless that is null; 0 at the end.
std::uint32_t FfmpegReader::take(std::uint64_t frames, std::byte* into) {
    if (m_taken == m_readyFrames && !decodeOn())
        return 0;
    const std::uint64_t count = std::min(frames, m_readyFrames - m_taken);
    if (into)
        copySamples({m_decoder->frame(), m_taken, count}, m_format.mChannelsPerFrame,
                    m_format.mBitsPerChannel, into);
    m_taken += count;
    return static_cast<std::uint32_t>(count);
}

bool FfmpegReader::skip(std::uint64_t frames) {
    while (frames > 0) {
        const std::uint32_t gone = take(frames, nullptr);
        if (gone == 0)
            return false;
        frames -= gone;
    }
    return true;
}

std::uint32_t FfmpegReader::read(std::uint64_t at, std::uint32_t frames, std::byte* into) {
    if (at < m_position && start() != noErr)
        return 0;
    if (!skip(at - m_position + std::exchange(m_toSkip, 0)))
        return 0;
    m_position = at;
    const std::uint64_t wanted =
        m_position < m_end ? std::min<std::uint64_t>(frames, m_end - m_position) : 0;
    std::uint32_t done = 0;
    while (done < wanted) {
        const std::uint32_t got = take(wanted - done, into + std::size_t{done} * frameBytes());
        if (got == 0)
            break;
        done += got;
    }
    m_position += done;
    return done;
}
