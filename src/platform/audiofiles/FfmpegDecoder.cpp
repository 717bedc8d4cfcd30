#include "audiofiles/FfmpegDecoder.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <string_view>

#include "audiofiles/AudioFile.h"

namespace {

constexpr int kBufferBytes = 32768;
constexpr int kMostSilentPackets = 4096;  // in a row, before a file counts as hopeless
constexpr char kDemuxers[] = "mov,aac,caf,mp3,wav,aiff,ogg,flac";
constexpr char kCodecs[] =
    "aac,alac,mp3float,mp3,flac,vorbis,opus,ac3,eac3,adpcm_ima_qt,pcm_s16be,pcm_s16le,pcm_s24be,"
    "pcm_s24le,pcm_s32be,pcm_s32le,pcm_f32be,pcm_f32le,pcm_f64be,pcm_f64le,pcm_s8,pcm_u8,pcm_alaw,"
    "pcm_mulaw";

}  // namespace

FfmpegDecoder::FfmpegDecoder(int descriptor, const DecodeFunctions& ffmpeg)
    : m_ffmpeg(ffmpeg), m_descriptor(descriptor) {}

FfmpegDecoder::~FfmpegDecoder() {
    m_ffmpeg.av_frame_free(&m_frame);
    m_ffmpeg.av_packet_free(&m_packet);
    m_ffmpeg.avcodec_free_context(&m_codec);
    m_ffmpeg.avformat_close_input(&m_format);
    if (m_io)
        m_ffmpeg.av_freep(&m_io->buffer);
    m_ffmpeg.avio_context_free(&m_io);
    releaseDecodePages();
}

std::unique_ptr<FfmpegDecoder> FfmpegDecoder::open(int descriptor, OSStatus* status) {
    const DecodeFunctions* ffmpeg = decodeFunctions();
    if (!ffmpeg) {
        *status = kAudioFileLibraryMissingError;
        return nullptr;
    }
    std::unique_ptr<FfmpegDecoder> decoder(new FfmpegDecoder(descriptor, *ffmpeg));
    *status = decoder->openFormat();
    if (*status == noErr)
        *status = decoder->openCodec();
    return *status == noErr ? std::move(decoder) : nullptr;
}

OSStatus FfmpegDecoder::openFormat() {
    auto* buffer = static_cast<unsigned char*>(m_ffmpeg.av_malloc(kBufferBytes));
    m_io = m_ffmpeg.avio_alloc_context(buffer, kBufferBytes, 0, this, readBytes, nullptr, seekTo);
    m_format = m_ffmpeg.avformat_alloc_context();
    if (!buffer || !m_io || !m_format)
        return kAudioFileOutOfMemoryError;
    m_format->pb = m_io;
    m_format->flags |= AVFMT_FLAG_CUSTOM_IO;
    m_format->io_open = refuseToOpen;
    m_format->format_whitelist = m_ffmpeg.av_strdup(kDemuxers);
    m_format->codec_whitelist = m_ffmpeg.av_strdup(kCodecs);
    m_format->protocol_whitelist = m_ffmpeg.av_strdup("");
    if (m_ffmpeg.avformat_open_input(&m_format, "", nullptr, nullptr) < 0)
        return kAudioFileInvalidFileError;
    if (m_ffmpeg.avformat_find_stream_info(m_format, nullptr) < 0)
        return kAudioFileInvalidFileError;
    const int index =
        m_ffmpeg.av_find_best_stream(m_format, AVMEDIA_TYPE_AUDIO, -1, -1, nullptr, 0);
    if (index < 0)
        return kAudioFileInvalidFileError;
    for (unsigned i = 0; i < m_format->nb_streams; ++i)
        if (i != static_cast<unsigned>(index))
            m_format->streams[i]->discard = AVDISCARD_ALL;
    m_stream = m_format->streams[index];
    return noErr;
}

OSStatus FfmpegDecoder::openCodec() {
    const AVCodec* codec = m_ffmpeg.avcodec_find_decoder(m_stream->codecpar->codec_id);
    m_codec = codec ? m_ffmpeg.avcodec_alloc_context3(codec) : nullptr;
    if (!m_codec || m_ffmpeg.avcodec_parameters_to_context(m_codec, m_stream->codecpar) < 0)
        return kAudioFileUnsupportedDataFormatError;
    m_codec->pkt_timebase = m_stream->time_base;
    m_codec->thread_count = 1;
    m_codec->codec_whitelist = m_ffmpeg.av_strdup(kCodecs);
    if (m_ffmpeg.avcodec_open2(m_codec, codec, nullptr) < 0)
        return kAudioFileUnsupportedDataFormatError;
    m_packet = m_ffmpeg.av_packet_alloc();
    m_frame = m_ffmpeg.av_frame_alloc();
    return m_packet && m_frame ? noErr : kAudioFileOutOfMemoryError;
}

std::uint32_t FfmpegDecoder::pcmBits() const {
    const AVCodecID id = codec();
    const bool coded = id < AV_CODEC_ID_PCM_S16LE || id >= AV_CODEC_ID_ADPCM_IMA_QT ||
                       id == AV_CODEC_ID_PCM_MULAW || id == AV_CODEC_ID_PCM_ALAW;
    return coded ? 0 : static_cast<std::uint32_t>(m_ffmpeg.av_get_bits_per_sample(id));
}

std::uint64_t FfmpegDecoder::statedFrames(int rate) const {
    // Elsewhere, in bare AAC frames above all, the library guesses from the bit rate.
    const std::string_view container = m_format->iformat->name;
    if ((!container.starts_with("mov") && container != "caf") || m_stream->duration <= 0)
        return 0;
    const std::int64_t frames =
        m_ffmpeg.av_rescale_q(m_stream->duration, m_stream->time_base, AVRational{1, rate});
    return static_cast<std::uint64_t>(std::max<std::int64_t>(frames, 0));
}

bool FfmpegDecoder::next() {
    for (int fed = 0; fed < kMostSilentPackets; ++fed) {
        const int result = m_ffmpeg.avcodec_receive_frame(m_codec, m_frame);
        if (result == 0 && m_frame->nb_samples > 0)
            return true;
        if (result == AVERROR_EOF)
            return false;
        feed();
    }
    return false;
}

/// Hands the next packet to the codec, or at the end of the file the news that there is none.
void FfmpegDecoder::feed() {
    while (m_ffmpeg.av_read_frame(m_format, m_packet) >= 0) {
        const bool ours = m_packet->stream_index == m_stream->index;
        if (ours)
            m_ffmpeg.avcodec_send_packet(m_codec, m_packet);
        m_ffmpeg.av_packet_unref(m_packet);
        if (ours)
            return;
    }
    m_ffmpeg.avcodec_send_packet(m_codec, nullptr);
}

int FfmpegDecoder::readBytes(void* self, std::uint8_t* into, int bytes) {
    auto& decoder = *static_cast<FfmpegDecoder*>(self);
    const ssize_t got =
        pread(decoder.m_descriptor, into, static_cast<std::size_t>(bytes), decoder.m_offset);
    if (got < 0)
        return AVERROR(errno);
    decoder.m_offset += got;
    return got == 0 ? AVERROR_EOF : static_cast<int>(got);
}

std::int64_t FfmpegDecoder::seekTo(void* self, std::int64_t offset, int whence) {
    auto& decoder = *static_cast<FfmpegDecoder*>(self);
    struct stat info {};
    if (fstat(decoder.m_descriptor, &info) != 0)
        return AVERROR(errno);
    if (whence == AVSEEK_SIZE)
        return info.st_size;
    const std::int64_t base = whence == SEEK_END   ? info.st_size
                              : whence == SEEK_CUR ? decoder.m_offset
                                                   : 0;
    if (offset < -base)
        return AVERROR(EINVAL);
    return decoder.m_offset = base + offset;
}

int FfmpegDecoder::refuseToOpen(AVFormatContext*, AVIOContext**, const char*, int, AVDictionary**) {
    return AVERROR(EACCES);
}
