#include "audiofiles/WavHeader.h"

#include <cstring>

#include "audiounits/StreamConversion.h"

namespace {

constexpr std::uint64_t kLargestSize = 0xffffffff;
constexpr int kLinearPcm = 1;
constexpr int kFloats = 3;

/// Bytes in front of the samples.
std::uint32_t headerBytes(const StreamDescription& format) {
    return format.isFloat() ? 58 : 44;
}

}  // namespace

bool WavHeader::supports(const StreamDescription& format) {
    return StreamConversion::supports(format) && format.isInterleaved() &&
           format.mSampleRate <= 1e7 &&
           format.mSampleRate == static_cast<std::uint32_t>(format.mSampleRate);
}

std::uint64_t WavHeader::maximumFrames(const StreamDescription& format) {
    return (kLargestSize - headerBytes(format) + 8) / format.mBytesPerFrame;
}

WavHeader::WavHeader(const StreamDescription& format, std::uint64_t frames) {
    const auto rate = static_cast<std::uint32_t>(format.mSampleRate);
    const std::uint64_t dataBytes = frames * format.mBytesPerFrame;
    text("RIFF");
    number(dataBytes + headerBytes(format) - 8, 4);
    text("WAVE");
    text("fmt ");
    number(format.isFloat() ? 18 : 16, 4);
    number(format.isFloat() ? kFloats : kLinearPcm, 2);
    number(format.mChannelsPerFrame, 2);
    number(rate, 4);
    number(std::uint64_t{rate} * format.mBytesPerFrame, 4);
    number(format.mBytesPerFrame, 2);
    number(format.mBitsPerChannel, 2);
    if (format.isFloat()) {
        number(0, 2);  // bytes of extension
        text("fact");
        number(4, 4);
        number(frames, 4);
    }
    text("data");
    number(dataBytes, 4);
}

void WavHeader::text(const char* four) {
    std::memcpy(&m_bytes[m_size], four, 4);
    m_size += 4;
}

void WavHeader::number(std::uint64_t value, int bytes) {
    for (int i = 0; i < bytes; ++i)
        m_bytes[m_size++] = static_cast<std::uint8_t>(value >> 8 * i);
}
