#include "audiofiles/SampleUnpacker.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>
#include <limits>
#include <type_traits>

namespace {

template <typename Word>
Word swapped(Word word) {
    if constexpr (sizeof(Word) == 1)
        return word;
    else if constexpr (sizeof(Word) == 2)
        return __builtin_bswap16(word);
    else if constexpr (sizeof(Word) == 4)
        return __builtin_bswap32(word);
    else
        return __builtin_bswap64(word);
}

template <typename Word, bool Swap>
Word load(const std::byte* at) {
    Word word;
    std::memcpy(&word, at, sizeof(Word));
    return Swap ? swapped(word) : word;
}

template <typename Real>
Real finiteOrZero(Real value) {
    return std::abs(value) <= std::numeric_limits<Real>::max() ? value : Real(0);
}

// Each reads one sample of its kind. Bytes of one sample never reach past it.

template <typename Real, bool Signed>
struct Integer8 {
    static constexpr std::size_t kBytes = 1;
    static constexpr Real kScale = Real(1) / 128;
    static Real read(const std::byte* at) {
        const int byte = std::to_integer<int>(*at);
        return kScale * static_cast<Real>(Signed ? static_cast<std::int8_t>(byte) : byte - 128);
    }
};

template <typename Real, bool Swap>
struct Integer16 {
    static constexpr std::size_t kBytes = 2;
    static constexpr Real kScale = Real(1) / 32768;
    static Real read(const std::byte* at) {
        return kScale * static_cast<Real>(static_cast<std::int16_t>(load<std::uint16_t, Swap>(at)));
    }
};

template <typename Real, bool BigEndian>
struct Integer24 {
    static constexpr std::size_t kBytes = 3;
    static constexpr Real kScale = Real(1) / 8388608;
    static Real read(const std::byte* at) {
        const auto byte = [at](int i) { return std::to_integer<std::uint32_t>(at[i]); };
        const std::uint32_t top = BigEndian ? byte(0) << 24 | byte(1) << 16 | byte(2) << 8
                                            : byte(2) << 24 | byte(1) << 16 | byte(0) << 8;
        return kScale * static_cast<Real>(static_cast<std::int32_t>(top) >> 8);
    }
};

template <typename Real, bool Swap>
struct Integer32 {
    static constexpr std::size_t kBytes = 4;
    static constexpr Real kScale = Real(1) / 2147483648;
    static Real read(const std::byte* at) {
        return kScale * static_cast<Real>(static_cast<std::int32_t>(load<std::uint32_t, Swap>(at)));
    }
};

template <typename Real, typename Float, typename Word, bool Swap>
struct Floating {
    static constexpr std::size_t kBytes = sizeof(Float);
    static Real read(const std::byte* at) {
        return finiteOrZero(static_cast<Real>(std::bit_cast<Float>(load<Word, Swap>(at))));
    }
};

/// With a stride that the compiler knows it does many at once.
template <typename Sample, typename Real>
void readAll(const std::byte* at, std::size_t stride, std::uint32_t frames, Real* out) {
    const auto read = [=](auto knownStride) {
        for (std::uint32_t i = 0; i < frames; ++i)
            out[i] = Sample::read(at + i * std::size_t{knownStride});
    };
    if (stride == Sample::kBytes)
        read(std::integral_constant<std::size_t, Sample::kBytes>());
    else if (stride == 2 * Sample::kBytes)
        read(std::integral_constant<std::size_t, 2 * Sample::kBytes>());
    else
        read(stride);
}

/// 16-bit stereo, the commonest kind by far: frames as one word let the compiler do many at once.
template <typename Real>
void readPairs16(const std::byte* at, std::uint32_t frames, bool bigEndian, Real* left,
                 Real* right) {
    constexpr Real kScale = Real(1) / 32768;
    const bool swap = bigEndian == (std::endian::native == std::endian::little);
    constexpr bool kLeftIsLow = std::endian::native == std::endian::little;
    const auto take = [&](auto swapping) {
        for (std::uint32_t i = 0; i < frames; ++i) {
            std::uint32_t pair;
            std::memcpy(&pair, at + 4 * std::size_t{i}, sizeof(pair));
            if constexpr (swapping)
                pair = (pair & 0x00ff00ff) << 8 | (pair >> 8 & 0x00ff00ff);
            const auto low =
                static_cast<Real>(static_cast<std::int32_t>(pair << 16) >> 16) * kScale;
            const auto high = static_cast<Real>(static_cast<std::int32_t>(pair) >> 16) * kScale;
            left[i] = kLeftIsLow ? low : high;
            right[i] = kLeftIsLow ? high : low;
        }
    };
    if (swap)
        take(std::true_type());
    else
        take(std::false_type());
}

template <typename Real>
using ReadChannel = void (*)(const std::byte*, std::size_t, std::uint32_t, Real*);

/// The reader for a kind of sample, null when there is none.
template <typename Real, bool BigEndian>
ReadChannel<Real> readerFor(const StreamDescription& format) {
    constexpr bool swap = BigEndian == (std::endian::native == std::endian::little);
    const bool isSigned = (format.mFormatFlags & kAudioFormatFlagIsSignedInteger) != 0;
    if (format.isFloat())
        switch (format.mBitsPerChannel) {
            case 32:
                return readAll<Floating<Real, float, std::uint32_t, swap>, Real>;
            case 64:
                return readAll<Floating<Real, double, std::uint64_t, swap>, Real>;
            default:
                return nullptr;
        }
    switch (format.mBitsPerChannel) {
        case 8:
            return isSigned ? readAll<Integer8<Real, true>, Real>
                            : readAll<Integer8<Real, false>, Real>;
        case 16:
            return readAll<Integer16<Real, swap>, Real>;
        case 24:
            return readAll<Integer24<Real, BigEndian>, Real>;
        case 32:
            return readAll<Integer32<Real, swap>, Real>;
        default:
            return nullptr;
    }
}

template <typename Real>
ReadChannel<Real> reader(const StreamDescription& format) {
    return format.mFormatFlags & kAudioFormatFlagIsBigEndian ? readerFor<Real, true>(format)
                                                             : readerFor<Real, false>(format);
}

}  // namespace

template <typename Real>
bool SampleUnpacker<Real>::supports(const StreamDescription& format) {
    return reader<Real>(format) && format.mChannelsPerFrame > 0 && format.isInterleaved() &&
           format.mBytesPerFrame == format.mBitsPerChannel / 8 * format.mChannelsPerFrame;
}

template <typename Real>
std::uint32_t SampleUnpacker<Real>::planeCount() const {
    return std::min(m_format.mChannelsPerFrame, 2u);
}

template <typename Real>
void SampleUnpacker<Real>::unpack(const std::byte* packed, std::uint32_t frames,
                                  std::vector<Real>* planes) {
    for (std::uint32_t c = 0; c < planeCount(); ++c)
        if (planes[c].size() < frames)
            planes[c].resize(frames);
    if (m_format.mBitsPerChannel == 16 && m_format.mChannelsPerFrame == 2) {
        readPairs16(packed, frames, (m_format.mFormatFlags & kAudioFormatFlagIsBigEndian) != 0,
                    planes[0].data(), planes[1].data());
        return;
    }
    for (std::uint32_t c = 0; c < planeCount(); ++c) {
        if (m_format.mChannelsPerFrame > 2)
            fold(packed, c, frames, planes[c].data());
        else
            unpackChannel(packed, c, frames, planes[c].data());
    }
}

template <typename Real>
void SampleUnpacker<Real>::unpackChannel(const std::byte* packed, std::uint32_t channel,
                                         std::uint32_t frames, Real* out) const {
    reader<Real>(m_format)(packed + channel * (m_format.mBitsPerChannel / 8),
                           m_format.mBytesPerFrame, frames, out);
}

template <typename Real>
void SampleUnpacker<Real>::fold(const std::byte* packed, std::uint32_t first, std::uint32_t frames,
                                Real* out) {
    m_channel.resize(frames);
    std::fill_n(out, frames, Real(0));
    std::uint32_t count = 0;
    for (std::uint32_t c = first; c < m_format.mChannelsPerFrame; c += 2, ++count) {
        unpackChannel(packed, c, frames, m_channel.data());
        for (std::uint32_t i = 0; i < frames; ++i)
            out[i] += m_channel[i];
    }
    for (std::uint32_t i = 0; i < frames; ++i)
        out[i] = finiteOrZero(out[i] / static_cast<Real>(count));
}

template class SampleUnpacker<float>;
template class SampleUnpacker<double>;
