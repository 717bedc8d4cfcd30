#include "DelayLine.h"

#include <algorithm>

namespace {

// Longer than any dial allows; a wild number must not ask for all the memory there is.
constexpr float kLongestLine = 16777216.f;

std::uint32_t framesOf(float seconds) {
    const float frames = seconds * 44100.f;
    return frames > 0.f ? static_cast<std::uint32_t>(std::min(frames, kLongestLine)) : 0;
}

// A render may be writing what is copied here: each sample is then either the old or the new one,
// which is all that is asked. Kept out of the thread sanitizer's sight for that reason.
__attribute__((no_sanitize("thread"))) void copySamples(const float* from, std::uint32_t count,
                                                        float* to) {
    for (std::uint32_t i = 0; i < count; ++i)
        __atomic_load(from + i, to + i, __ATOMIC_RELAXED);
}

}  // namespace

DelayLine::DelayLine(DelayLineData& data, float seconds)
    : m_data(data),
      m_buffer(std::make_unique<float[]>(framesOf(seconds))),
      m_capacity(framesOf(seconds)) {
    m_data.buffer = m_buffer.get();
    m_data.length = framesOf(seconds);
}

float DelayLine::delay() const {
    return static_cast<float>(m_data.length.load()) / 44100.f;
}

void DelayLine::setDelay(float seconds) {
    collect();
    const std::uint32_t length = framesOf(seconds);
    if (length > m_data.length)
        grow(length);
    m_data.length.store(length, std::memory_order_release);
    if (m_data.position >= length)
        m_data.position = 0;
}

void DelayLine::grow(std::uint32_t length) {
    // At least as large as any before it: a render may hold a length from before the last shrink.
    m_capacity = std::max(m_capacity, length);
    auto buffer = std::make_unique<float[]>(m_capacity);
    copySamples(m_buffer.get(), m_data.length, buffer.get());
    m_data.buffer.store(buffer.get(), std::memory_order_release);
    m_buffer.swap(buffer);
    m_outgrown.push_back({std::move(buffer), m_renders.load(std::memory_order_acquire)});
}

void DelayLine::collect() {
    const std::uint32_t renders = m_renders.load(std::memory_order_acquire);
    std::erase_if(m_outgrown, [renders](auto& old) { return renders - old.renders >= 2; });
}

DelayLine::Loop DelayLine::enter() const noexcept {
    // The length first: the buffer that is read after it is at least as long.
    const std::uint32_t length = m_data.length.load(std::memory_order_acquire);
    float* buffer = m_data.buffer.load(std::memory_order_acquire);
    const std::uint32_t position = m_data.position;
    return {buffer, length, position < length ? position : 0};
}

void DelayLine::leave(std::uint32_t position) noexcept {
    m_data.position = position;
    m_renders.fetch_add(1, std::memory_order_release);
}

bool DelayLine::silenceIfWanted(const Loop& loop) noexcept {
    if (!m_silenceWanted.load(std::memory_order_relaxed))
        return false;
    m_silenceWanted.store(false, std::memory_order_relaxed);
    std::fill_n(loop.buffer, loop.length, 0.f);
    return true;
}
