#include "midi/PedalHold.h"

#include <utility>

bool PedalHold::release(std::uint8_t note) {
    m_down.reset(note);
    if (!m_sustain && !m_caught[note])
        return true;
    m_waiting.set(note);
    return false;
}

PedalHold::Notes PedalHold::setSustain(bool down) {
    m_sustain = down;
    return takeFreed();
}

/// Told again that it is down, it catches no more.
PedalHold::Notes PedalHold::setSostenuto(bool down) {
    if (std::exchange(m_sostenuto, down) != down)
        m_caught = down ? m_down : Notes();
    return takeFreed();
}

PedalHold::Notes PedalHold::takeFreed() {
    const Notes freed = m_sustain ? Notes() : m_waiting & ~m_caught;
    m_waiting &= ~freed;
    return freed;
}
