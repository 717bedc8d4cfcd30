#include "audiofiles/AudioConverter.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <memory>
#include <optional>
#include <type_traits>

#include "audiofiles/Resampler.h"
#include "audiofiles/SampleUnpacker.h"

struct OpaqueAudioConverter {
    virtual ~OpaqueAudioConverter() = default;
    virtual OSStatus fill(AudioConverterComplexInputDataProc inputProc, void* userData,
                          std::uint32_t* ioFrames, AudioBuffer& output) = 0;
};

namespace {

constexpr std::uint32_t kFramesAtATime = 4096;

/// To nearest even, saturated; not-a-number is 0. Adding and taking away 1.5 x 2^(mantissa bits)
/// rounds to whole numbers and, unlike a call of the library, is done for many samples at once.
template <typename Real>
std::int32_t roundedTo16(Real sample) {
    constexpr Real kRounder = std::is_same_v<Real, float> ? Real(12582912) : Real(6755399441055744);
    Real scaled = sample * 32768;
    scaled = scaled == scaled ? scaled : 0;
    scaled = scaled > -32768 ? scaled : -32768;
    scaled = scaled < 32767 ? scaled : 32767;
    return static_cast<std::int32_t>((scaled + kRounder) - kRounder);
}

template <typename Real>
void store(Real sample, std::int16_t& out) {
    out = static_cast<std::int16_t>(roundedTo16(sample));
}
template <typename Real>
void store(Real sample, float& out) {
    out = static_cast<float>(sample);
}

template <typename Real, typename Sample>
void copyOut(const Real* plane, std::uint32_t frames, Sample* out) {
    for (std::uint32_t i = 0; i < frames; ++i)
        store(plane[i], out[i]);
}

template <typename Real, typename Sample>
void interleave(const Real* __restrict left, const Real* __restrict right, std::size_t frames,
                Sample* __restrict out) {
    for (std::size_t i = 0; i < frames; ++i) {
        store(left[i], out[2 * i]);
        store(right[i], out[2 * i + 1]);
    }
}

/// Real is double where floats could not hold every step before the rounding.
template <typename Real>
class Conversion : public OpaqueAudioConverter {
  public:
    static constexpr bool kCanResample = std::is_same_v<Real, float>;

    Conversion(const StreamDescription& source, const StreamDescription& target)
        : m_unpacker(source), m_sourceFrameBytes(source.mBytesPerFrame), m_target(target) {
        if (source.mSampleRate != target.mSampleRate)
            m_resampler.emplace(static_cast<int>(source.mSampleRate),
                                static_cast<int>(target.mSampleRate),
                                static_cast<int>(target.mChannelsPerFrame));
    }
    bool valid() const { return !m_resampler || m_resampler->valid(); }

    OSStatus fill(AudioConverterComplexInputDataProc inputProc, void* userData,
                  std::uint32_t* ioFrames, AudioBuffer& output) override {
        const std::uint32_t wanted = *ioFrames;
        std::uint32_t& done = *ioFrames = 0;
        while (done < wanted) {
            if (m_at == m_ready) {
                if (const OSStatus status = refill(inputProc, userData))
                    return status;
                if (m_ready == 0)
                    break;
            }
            const std::uint32_t frames = std::min(wanted - done, m_ready - m_at);
            emit(frames, output, done);
            done += frames;
        }
        output.mDataByteSize = done * m_target.mBytesPerFrame;
        return noErr;
    }

  private:
    /// Leaves m_ready at 0 when nothing more will come.
    OSStatus refill(AudioConverterComplexInputDataProc inputProc, void* userData) {
        m_at = m_ready = 0;
        while (m_ready == 0 && !m_inputEnded) {
            std::uint32_t frames = kFramesAtATime;
            AudioBufferList input = AudioBufferList::single(nullptr, 0, 0);
            // Packets are frames of one size here, so nobody has to describe them.
            if (const OSStatus status = inputProc(this, &frames, &input, nullptr, userData))
                return status;
            frames = std::min(frames, input.mBuffers[0].mDataByteSize / m_sourceFrameBytes);
            m_inputEnded = frames == 0;
            take(input.samples<const std::byte>(), frames);
        }
        if constexpr (kCanResample)
            if (m_ready == 0 && m_resampler)
                m_ready = m_resampler->flush(m_planes);
        return noErr;
    }

    void take(const std::byte* packed, std::uint32_t frames) {
        if (frames == 0)
            return;
        if constexpr (kCanResample)
            if (m_resampler) {
                m_unpacker.unpack(packed, frames, m_unpacked);
                m_ready = m_resampler->process(m_unpacked, frames, m_planes);
                return;
            }
        m_unpacker.unpack(packed, frames, m_planes);
        m_ready = frames;
    }

    void emit(std::uint32_t frames, AudioBuffer& output, std::uint32_t done) {
        if (m_target.isFloat())
            emitTo(static_cast<float*>(output.mData), frames, done);
        else
            emitTo(static_cast<std::int16_t*>(output.mData), frames, done);
        m_at += frames;
    }

    template <typename Sample>
    void emitTo(Sample* out, std::uint32_t frames, std::uint32_t done) {
        if (m_target.mChannelsPerFrame == 2)
            interleave(m_planes[0].data() + m_at, m_planes[1].data() + m_at, frames,
                       out + std::size_t{done} * 2);
        else
            copyOut(m_planes[0].data() + m_at, frames, out + done);
    }

    SampleUnpacker<Real> m_unpacker;
    std::uint32_t m_sourceFrameBytes;
    StreamDescription m_target;
    std::optional<Resampler> m_resampler;
    std::vector<Real> m_unpacked[2];
    std::vector<Real> m_planes[2];  // converted frames [m_at, m_ready) wait here
    std::uint32_t m_at = 0;
    std::uint32_t m_ready = 0;
    bool m_inputEnded = false;
};

bool isTarget(const StreamDescription& target, std::uint32_t sourceChannels) {
    const std::uint32_t bits = target.isFloat() ? 32 : 16;
    const bool layout = target.mChannelsPerFrame == 1 || target.isInterleaved();
    return target.mFormatID == kAudioFormatLinearPCM && target.mBitsPerChannel == bits && layout &&
           (target.mFormatFlags & kAudioFormatFlagIsBigEndian) == 0 &&
           target.mBytesPerFrame == bits / 8 * target.mChannelsPerFrame &&
           target.mChannelsPerFrame == std::min(sourceChannels, 2u);
}

/// Floats hold integers of up to 24 bits; the resampler works with floats anyway.
bool needsDouble(const StreamDescription& source, const StreamDescription& target) {
    const std::uint32_t exactBits = source.isFloat() ? 32 : 24;
    return source.mSampleRate == target.mSampleRate &&
           (source.mBitsPerChannel > exactBits || source.mChannelsPerFrame > 2);
}

bool isRate(double rate) {
    return rate >= 1.0 && rate <= 1e7;
}

template <typename Real>
OSStatus makeConversion(const StreamDescription& source, const StreamDescription& target,
                        AudioConverterRef* converter) {
    auto made = std::make_unique<Conversion<Real>>(source, target);
    if (!made->valid())
        return Resampler::available() ? kAudioConverterErr_FormatNotSupported
                                      : kAudioFileLibraryMissingError;
    *converter = made.release();
    return noErr;
}

}  // namespace

OSStatus AudioConverterNew(const StreamDescription* source, const StreamDescription* target,
                           AudioConverterRef* converter) {
    *converter = nullptr;
    if (!isRate(source->mSampleRate) || !isRate(target->mSampleRate))
        return kAudioConverterErr_OutputSampleRateOutOfRange;
    if (!SampleUnpacker<double>::supports(*source) || !isTarget(*target, source->mChannelsPerFrame))
        return kAudioConverterErr_FormatNotSupported;
    try {
        return needsDouble(*source, *target) ? makeConversion<double>(*source, *target, converter)
                                             : makeConversion<float>(*source, *target, converter);
    } catch (...) {
        return kAudioFileOutOfMemoryError;
    }
}

OSStatus AudioConverterFillComplexBuffer(AudioConverterRef converter,
                                         AudioConverterComplexInputDataProc inputProc,
                                         void* userData, std::uint32_t* ioPackets,
                                         AudioBufferList* output, AudioStreamPacketDescription*) {
    if (!converter || !inputProc || !ioPackets || !output)
        return kAudio_ParamError;
    try {
        return converter->fill(inputProc, userData, ioPackets, output->mBuffers[0]);
    } catch (...) {
        return kAudioFileOutOfMemoryError;
    }
}

OSStatus AudioConverterDispose(AudioConverterRef converter) {
    delete converter;
    return converter ? noErr : kAudio_ParamError;
}
