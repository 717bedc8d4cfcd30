#include "audiounits/StreamConversion.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace {

constexpr float kIntegerScale = 32768.f;

template <typename Sample>
struct Channel {
    Sample* first;
    std::uint32_t stride;
};

template <typename Sample>
Channel<Sample> channelOf(const AudioBufferList& list, const StreamDescription& format,
                          std::uint32_t channel) {
    channel = std::min(channel, format.mChannelsPerFrame - 1);
    if (format.isInterleaved())
        return {list.samples<Sample>() + channel, format.mChannelsPerFrame};
    return {list.samples<Sample>(channel), 1};
}

std::int16_t saturated(float sample) {
    const float scaled = sample * kIntegerScale;
    if (!(scaled > -32768.f))  // not-a-number ends here too
        return std::isnan(scaled) ? std::int16_t{0} : std::int16_t{-32768};
    if (scaled > 32767.f)
        return 32767;
    return static_cast<std::int16_t>(std::lrintf(scaled));
}

std::uint32_t bytesPerSample(const StreamDescription& format) {
    return format.mBitsPerChannel / 8;
}

std::uint32_t bufferCount(const StreamDescription& format) {
    return format.isInterleaved() ? 1 : format.mChannelsPerFrame;
}

}  // namespace

bool StreamConversion::supports(const StreamDescription& format) {
    const bool sample = format.isFloat()
                            ? format.mBitsPerChannel == 32
                            : format.mBitsPerChannel == 16 &&
                                  (format.mFormatFlags & kAudioFormatFlagIsSignedInteger);
    const std::uint32_t inFrame = format.isInterleaved() ? format.mChannelsPerFrame : 1;
    return format.mFormatID == kAudioFormatLinearPCM && sample &&
           !(format.mFormatFlags & kAudioFormatFlagIsBigEndian) && format.mChannelsPerFrame >= 1 &&
           format.mChannelsPerFrame <= 2 && format.mFramesPerPacket == 1 &&
           format.mBytesPerFrame == inFrame * bytesPerSample(format) &&
           format.mBytesPerPacket == format.mBytesPerFrame && format.mSampleRate > 0;
}

void StreamConversion::read(const AudioBufferList& from, const StreamDescription& format,
                            std::uint32_t channel, std::span<float> frames) noexcept {
    if (format.isFloat()) {
        const auto in = channelOf<const float>(from, format, channel);
        for (std::size_t i = 0; i < frames.size(); ++i)
            frames[i] = in.first[i * in.stride];
    } else {
        const auto in = channelOf<const std::int16_t>(from, format, channel);
        for (std::size_t i = 0; i < frames.size(); ++i)
            frames[i] = static_cast<float>(in.first[i * in.stride]) / kIntegerScale;
    }
}

void StreamConversion::write(std::span<const float> frames, const StreamDescription& format,
                             std::uint32_t channel, AudioBufferList& to) noexcept {
    if (format.isFloat()) {
        const auto out = channelOf<float>(to, format, channel);
        for (std::size_t i = 0; i < frames.size(); ++i)
            out.first[i * out.stride] = frames[i];
    } else {
        const auto out = channelOf<std::int16_t>(to, format, channel);
        for (std::size_t i = 0; i < frames.size(); ++i)
            out.first[i * out.stride] = saturated(frames[i]);
    }
}

void StreamConversion::clear(AudioBufferList& list, const StreamDescription& format,
                             std::uint32_t frames) noexcept {
    for (std::uint32_t b = 0; b < std::min(list.mNumberBuffers, 2u); ++b)
        std::memset(list.mBuffers[b].mData, 0, std::size_t{frames} * format.mBytesPerFrame);
}

StreamScratch::StreamScratch(std::uint32_t frames)
    : m_frames(frames), m_memory(std::make_unique<float[]>(std::size_t{2} * frames)) {}

AudioBufferList StreamScratch::list(const StreamDescription& format,
                                    std::uint32_t frames) noexcept {
    AudioBufferList list;
    list.mNumberBuffers = bufferCount(format);
    for (std::uint32_t b = 0; b < list.mNumberBuffers; ++b)
        list.mBuffers[b] = {format.isInterleaved() ? format.mChannelsPerFrame : 1,
                            frames * format.mBytesPerFrame,
                            m_memory.get() + std::size_t{b} * m_frames};
    return list;
}
