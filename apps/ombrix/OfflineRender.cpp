#include "OfflineRender.h"

#include <algorithm>

namespace {
constexpr std::uint64_t kSecond = 44100;  // frames
constexpr std::uint64_t kLongestTail = 60 * kSecond;
}  // namespace

void SilenceMeter::take(std::span<const std::int16_t> frames) {
    const auto sounding = std::ranges::find_if(frames.rbegin(), frames.rend(),
                                               [](std::int16_t frame) { return frame != 0; });
    const auto silent = static_cast<std::uint64_t>(sounding - frames.rbegin());
    m_silent = sounding == frames.rend() ? m_silent + silent : silent;
}

OfflineRender::OfflineRender(SongSession& session, ManualDevice& device, OfflineClock& clock,
                             std::uint32_t bufferFrames, std::optional<std::uint64_t> frames)
    : m_session(session),
      m_device(device),
      m_clock(clock),
      m_player(session.timeline(), session.instrument().notes()),
      m_buffer(bufferFrames),
      m_wanted(frames),
      m_finished(frames == 0u) {}

std::span<const std::int16_t> OfflineRender::next() {
    m_player.sendUntil(m_rendered + m_buffer.size());
    m_device.render(m_buffer);
    m_clock.advance(m_buffer.size());
    m_rendered += m_buffer.size();
    m_silence.take(m_buffer);
    std::span<const std::int16_t> result(m_buffer);
    if (m_wanted && m_rendered >= *m_wanted)
        result = result.first(m_buffer.size() - (m_rendered - *m_wanted));
    m_finished = m_wanted ? m_rendered >= *m_wanted : m_player.ended() && (faded() || tooLong());
    return result;
}

bool OfflineRender::faded() const {
    Instrument& instrument = m_session.instrument();
    return !instrument.keysSound() && m_silence.silentFrames() >= kSecond + instrument.echoFrames();
}

bool OfflineRender::tooLong() const {
    return m_rendered + m_buffer.size() > m_session.timeline().endFrame + kLongestTail;
}
