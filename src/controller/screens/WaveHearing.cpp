#include "screens/WaveHearing.h"

#include <algorithm>
#include <utility>

#include "VornWaveSequence.h"
#include "audition/Audition.h"
#include "runloop/Clock.h"

namespace {

constexpr double kHeadLookSeconds = 1.0 / 60;
constexpr double kNowhere = -1;

std::uint32_t unsignedFrame(int frame) {
    return static_cast<std::uint32_t>(frame);
}

}  // namespace

WaveHearing::WaveHearing(const WaveSelection* selection)
    : m_selection(selection), m_audition(std::make_unique<Audition>()) {}

WaveHearing::~WaveHearing() {
    RunLoop::main().cancel(m_looks);
}

int WaveHearing::length() const {
    return m_sound ? static_cast<int>(m_sound->sampleCount()) : 0;
}

void WaveHearing::setSound(Sound sound) {
    stop();
    m_audition->letGo();
    m_sound = std::move(sound);
}

int WaveHearing::endFor(int frame, int to) const {
    if (to > frame)
        return std::min(to, length());
    if (m_selection && m_selection->isPartAt(frame))
        return std::min(m_selection->stop(), length());
    return length();
}

void WaveHearing::playFrom(int frame, int to) {
    frame = std::max(frame, 0);
    if (frame >= length())
        return stop();
    m_scrubbing = false;
    const int end = endFor(frame, to);
    // From the sound's first frame on, so that positions are those of the sound.
    const Sound heard = end < length() ? m_sound->sliceFrom(0, unsignedFrame(end)) : m_sound;
    m_audition->play(heard, {.from = unsignedFrame(frame), .gain = kGain});
    m_head.begin(frame, Clock::monotonic());
    if (!m_looks)
        m_looks = RunLoop::main().callEvery(kHeadLookSeconds, [this] { look(); });
    show(true, frame);
}

void WaveHearing::look() {
    const bool running = m_audition->isPlaying();
    const double rendered = m_audition->position();
    const double head = m_head.follow(rendered, Clock::monotonic());
    // What was rendered last is still on its way to the ear.
    if (!running && head >= rendered)
        return ended();
    show(true, head);
}

void WaveHearing::ended() {
    RunLoop::main().cancel(std::exchange(m_looks, 0));
    show(false, kNowhere);
}

void WaveHearing::stop() {
    m_scrubbing = false;
    m_audition->stop();
    ended();
}

void WaveHearing::beginScrub() {
    stop();
    m_audition->scrub(m_sound, kGain);
    m_scrubbing = true;
}

void WaveHearing::scrubTo(int frame) {
    if (length() == 0)
        return;
    if (!m_scrubbing)
        beginScrub();
    frame = std::clamp(frame, 0, length() - 1);
    m_audition->scrubTo(frame);
    show(false, frame);
}

void WaveHearing::endScrub() {
    if (std::exchange(m_scrubbing, false))
        show(false, kNowhere);
}

void WaveHearing::show(bool playing, double playHead) {
    const bool began = std::exchange(m_playing, playing) != playing;
    const bool moved = std::exchange(m_playHead, playHead) != playHead;
    if (began)
        Q_EMIT playingChanged();
    if (moved)
        Q_EMIT playHeadChanged();
}
