#include "Listening.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>
#include <utility>

namespace {
constexpr double kNever = std::numeric_limits<double>::infinity();
constexpr double kLeastDecibels = -99.9;
constexpr double kLastFrame = std::numeric_limits<std::int32_t>::max();
}  // namespace

Listening::Listening(Audition& audition, Audition::Sound sound, Wish wish)
    : m_audition(audition), m_sound(std::move(sound)), m_wish(std::move(wish)) {}

void Listening::goOnTo(double seconds) {
    if (!std::exchange(m_begun, true)) {
        if (scrubbing())
            m_audition.scrub(m_sound, m_wish.scrubGain);
        else
            m_audition.play(m_sound, m_wish.playing);
    }
    for (; nextDue() <= seconds; ++m_visited) {
        const double frame = std::round(m_wish.places[m_visited] * kGraphRate);
        m_audition.scrubTo(static_cast<std::int32_t>(std::min(frame, kLastFrame)));
    }
}

double Listening::nextDue() const {
    return m_visited < m_wish.places.size() ? static_cast<double>(m_visited) * m_wish.pace : kNever;
}

bool Listening::ended() const {
    if (scrubbing())
        return m_visited == m_wish.places.size() && !m_audition.isScrubbing();
    return !m_audition.isPlaying();
}

std::string Listening::status() const {
    char text[80];
    const double length = m_sound->sampleCount() / kGraphRate;
    if (scrubbing()) {
        const double place = m_visited > 0 ? m_wish.places[m_visited - 1] : 0;
        std::snprintf(text, sizeof text, "%8.2f s of %.2f s", place, length);
    } else {
        // The player keeps its last peaks.
        const double peak = ended() ? 0 : double{m_audition.peak()};
        const double level = 20 * std::log10(peak);
        std::snprintf(text, sizeof text, "%8.2f s of %.2f s %8.1f dB",
                      m_audition.position() / kGraphRate, length, std::fmax(level, kLeastDecibels));
    }
    return text;
}

std::optional<std::uint64_t> Listening::frames() const {
    if (scrubbing() || m_wish.playing.looping)
        return std::nullopt;
    return m_sound->sampleCount() - m_wish.playing.from;
}
