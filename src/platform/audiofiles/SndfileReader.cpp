#include "audiofiles/SndfileReader.h"

#include <sndfile.h>
#include <unistd.h>

#include <algorithm>
#include <bit>

#include "audiofiles/AudioFile.h"
#include "audiofiles/PcmClaim.h"

namespace {

struct PcmKind {
    int subtype;
    std::uint32_t bits;
    std::uint32_t flags;
};
constexpr PcmKind kPcmKinds[] = {
    {SF_FORMAT_PCM_S8, 8, kAudioFormatFlagIsSignedInteger},
    {SF_FORMAT_PCM_U8, 8, 0},
    {SF_FORMAT_PCM_16, 16, kAudioFormatFlagIsSignedInteger},
    {SF_FORMAT_PCM_24, 24, kAudioFormatFlagIsSignedInteger},
    {SF_FORMAT_PCM_32, 32, kAudioFormatFlagIsSignedInteger},
    {SF_FORMAT_FLOAT, 32, kAudioFormatFlagIsFloat},
    {SF_FORMAT_DOUBLE, 64, kAudioFormatFlagIsFloat},
};

/// Null for what has to be decoded.
const PcmKind* pcmKind(const SF_INFO& info) {
    const int container = info.format & SF_FORMAT_TYPEMASK;
    if (container == SF_FORMAT_FLAC || container == SF_FORMAT_OGG)
        return nullptr;
    const int subtype = info.format & SF_FORMAT_SUBMASK;
    const auto* kind = std::ranges::find(kPcmKinds, subtype, &PcmKind::subtype);
    return kind == std::end(kPcmKinds) ? nullptr : kind;
}

StreamDescription pcmFormat(const PcmKind& kind, double rate, std::uint32_t channels,
                            bool swapped) {
    const bool bigEndian = kind.bits > 8 && swapped == (std::endian::native == std::endian::little);
    const std::uint32_t frameBytes = kind.bits / 8 * channels;
    StreamDescription format;
    format.mSampleRate = rate;
    format.mFormatFlags =
        kind.flags | kAudioFormatFlagIsPacked | (bigEndian ? kAudioFormatFlagIsBigEndian : 0);
    format.mBytesPerPacket = format.mBytesPerFrame = frameBytes;
    format.mFramesPerPacket = 1;
    format.mChannelsPerFrame = channels;
    format.mBitsPerChannel = kind.bits;
    return format;
}

std::uint32_t codecID(int format) {
    switch (format & SF_FORMAT_TYPEMASK) {
        case SF_FORMAT_FLAC:
            return fourCC("flac");
        case SF_FORMAT_OGG:
            return fourCC("ogg ");
        default:
            return (format & SF_FORMAT_SUBMASK) == SF_FORMAT_ULAW   ? fourCC("ulaw")
                   : (format & SF_FORMAT_SUBMASK) == SF_FORMAT_ALAW ? fourCC("alaw")
                                                                    : fourCC("adpm");
    }
}

OSStatus statusOfSndfile(int error) {
    return error == SF_ERR_UNRECOGNISED_FORMAT    ? kAudioFileUnsupportedFileTypeError
           : error == SF_ERR_UNSUPPORTED_ENCODING ? kAudioFileUnsupportedDataFormatError
                                                  : kAudioFileInvalidFileError;
}

}  // namespace

std::unique_ptr<SoundReader> SndfileReader::open(int descriptor, OSStatus* status) {
    SF_INFO info{};
    lseek(descriptor, 0, SEEK_SET);
    SNDFILE* file = sf_open_fd(dup(descriptor), SFM_READ, &info, SF_TRUE);
    if (!file) {
        *status = statusOfSndfile(sf_error(nullptr));
        return nullptr;
    }
    std::unique_ptr<SndfileReader> reader(new SndfileReader(file));
    const auto channels = static_cast<std::uint32_t>(info.channels);
    const auto frames = static_cast<std::uint64_t>(std::max<sf_count_t>(info.frames, 0));
    // Codecs that do not say how long they are report the largest count.
    const bool unknown = info.frames == SF_COUNT_MAX;
    reader->m_claimedFrames = reader->m_expectedFrames = unknown ? 0 : frames;
    if (const PcmKind* kind = pcmKind(info)) {
        const bool swapped = sf_command(file, SFC_RAW_DATA_NEEDS_ENDSWAP, nullptr, 0) == SF_TRUE;
        reader->m_format = pcmFormat(*kind, info.samplerate, channels, swapped);
        const PcmClaim claim = readPcmClaim(descriptor);
        reader->m_claimedFrames = std::max(
            {frames, claim.bytes.value_or(0) / reader->frameBytes(), claim.frames.value_or(0)});
    } else {
        // Codecs of up to 24 bits: floats hold them.
        reader->m_format = decodedFormat(codecID(info.format), info.samplerate, channels, 32,
                                         kAudioFormatFlagIsFloat);
        reader->m_decodes = true;
    }
    return reader;
}

SndfileReader::~SndfileReader() {
    sf_close(m_file);
}

std::uint32_t SndfileReader::read(std::uint64_t at, std::uint32_t frames, std::byte* into) {
    if (at != m_position) {
        const sf_count_t reached = sf_seek(m_file, static_cast<sf_count_t>(at), SEEK_SET);
        if (reached < 0 || static_cast<std::uint64_t>(reached) != at)
            return 0;
        m_position = at;
    }
    const std::uint32_t got = readOn(frames, into);
    m_position += got;
    return got;
}

std::uint32_t SndfileReader::readOn(std::uint32_t frames, std::byte* into) {
    if (m_decodes)
        return static_cast<std::uint32_t>(std::max<sf_count_t>(
            sf_readf_float(m_file, reinterpret_cast<float*>(into), frames), 0));
    // Whole frames only: the library gives nothing at all when asked for part of one.
    const auto bytes = static_cast<sf_count_t>(frames) * frameBytes();
    return static_cast<std::uint32_t>(std::max<sf_count_t>(sf_read_raw(m_file, into, bytes), 0) /
                                      frameBytes());
}
