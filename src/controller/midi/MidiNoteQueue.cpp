#include "midi/MidiNoteQueue.h"

#include <utility>

MidiNoteQueue::MidiNoteQueue(Perform perform) : m_perform(std::move(perform)) {
    m_waiting.reserve(kCapacity);
    m_performing.reserve(kCapacity);
}

MidiNoteQueue::~MidiNoteQueue() {
    RunLoop::main().cancel(m_call);
}

bool MidiNoteQueue::takes(const MidiNoteMessage& message) const {
    if (m_waiting.size() + HeldNotes::kMost < kCapacity)
        return true;
    return message.kind == MidiNoteMessage::Kind::up && m_held.holds(message.note);
}

void MidiNoteQueue::push(const MidiNoteMessage& message) {
    std::lock_guard guard(m_mutex);
    if (!takes(message)) {
        ++m_dropped;
        return;
    }
    if (message.kind != MidiNoteMessage::Kind::aftertouch)
        m_held.note(message.note, message.kind == MidiNoteMessage::Kind::down);
    m_waiting.push_back(message);
    if (!m_call)
        m_call = RunLoop::main().callAfter(0, [this] { drain(); });
}

/// A drain that was not the run loop's leaves its call to find nothing, or what came since.
void MidiNoteQueue::drain() {
    {
        std::lock_guard guard(m_mutex);
        RunLoop::main().cancel(std::exchange(m_call, 0));
        std::swap(m_waiting, m_performing);
    }
    for (const MidiNoteMessage& message : m_performing)
        m_perform(message);
    m_performing.clear();
}

std::uint64_t MidiNoteQueue::dropped() const {
    std::lock_guard guard(m_mutex);
    return m_dropped;
}
