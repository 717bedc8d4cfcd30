#include "audiofiles/FrameRing.h"

#include <algorithm>
#include <bit>
#include <cstring>

FrameRing::FrameRing(const StreamDescription& format, double seconds)
    : m_format(format),
      m_room(std::bit_ceil(static_cast<std::uint32_t>(seconds * format.mSampleRate) + 1)),
      m_planes(format.isInterleaved() ? 1 : format.mChannelsPerFrame,
               std::vector<std::byte>(std::size_t{m_room} * format.mBytesPerFrame)) {}

std::uint32_t FrameRing::push(const AudioBufferList& from, std::uint32_t frames) noexcept {
    const std::uint64_t in = m_in.load(std::memory_order_relaxed);
    const auto used = static_cast<std::uint32_t>(in - m_out.load(std::memory_order_acquire));
    frames = std::min(frames, m_room - used);
    const auto at = static_cast<std::uint32_t>(in % m_room);
    const std::uint32_t beforeEnd = std::min(frames, m_room - at);
    copyIn(from, 0, at, beforeEnd);
    copyIn(from, beforeEnd, 0, frames - beforeEnd);
    m_in.store(in + frames, std::memory_order_release);
    return frames;
}

void FrameRing::copyIn(const AudioBufferList& from, std::uint32_t first, std::uint32_t at,
                       std::uint32_t frames) noexcept {
    const std::size_t size = frameBytes();
    if (frames == 0)
        return;
    for (std::uint32_t p = 0; p < bufferCount(); ++p)
        std::memcpy(&m_planes[p][at * size], from.samples<const std::byte>(p) + first * size,
                    frames * size);
}

AudioBufferList FrameRing::front(std::uint32_t* frames) noexcept {
    const std::uint64_t out = m_out.load(std::memory_order_relaxed);
    const auto used = static_cast<std::uint32_t>(m_in.load(std::memory_order_acquire) - out);
    const auto at = static_cast<std::uint32_t>(out % m_room);
    *frames = std::min({*frames, used, m_room - at});
    AudioBufferList list{bufferCount(), {}};
    const std::uint32_t channels = m_format.isInterleaved() ? m_format.mChannelsPerFrame : 1;
    for (std::uint32_t p = 0; p < bufferCount(); ++p)
        list.mBuffers[p] = {channels, *frames * frameBytes(),
                            &m_planes[p][std::size_t{at} * frameBytes()]};
    return list;
}

void FrameRing::pop(std::uint32_t frames) noexcept {
    m_out.store(m_out.load(std::memory_order_relaxed) + frames, std::memory_order_release);
}
