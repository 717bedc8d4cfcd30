#include "midi/MidiNoteQueue.h"

#include <utility>

namespace {

bool isOfNotes(const MidiMessage& message) {
    return message.kind <= MidiMessage::Kind::aftertouch;
}

/// Whether a note may go on for ever without it. That of another channel may have taken the room
/// that was kept for the release of a note.
bool releases(const MidiMessage& message) {
    if (message.kind != MidiMessage::Kind::control)
        return message.kind == MidiMessage::Kind::up;
    return isPedal(message.data1) ? !isPedalDown(message.data2) : message.data1 >= kMidiAllSoundOff;
}

/// Whether nobody misses the message before it.
bool replaces(const MidiMessage& message, const MidiMessage& before) {
    if (isOfNotes(message) || message.kind != before.kind || message.source != before.source ||
        message.channel != before.channel)
        return false;
    return message.kind != MidiMessage::Kind::control ||
           (message.data1 == before.data1 && !isPedal(message.data1));
}

}  // namespace

MidiNoteQueue::MidiNoteQueue(Perform perform) : m_perform(std::move(perform)) {
    m_waiting.reserve(kCapacity);
    m_performing.reserve(kCapacity);
}

MidiNoteQueue::~MidiNoteQueue() {
    RunLoop::main().cancel(m_call);
}

bool MidiNoteQueue::takes(const MidiMessage& message) const {
    if (m_waiting.size() + HeldNotes::kMost < kCapacity)
        return true;
    return message.kind == MidiMessage::Kind::up && m_held.holds(message.data1);
}

void MidiNoteQueue::push(const MidiMessage& message) {
    std::lock_guard guard(m_mutex);
    if (!m_waiting.empty() && replaces(message, m_waiting.back())) {
        m_waiting.back() = message;
        return;
    }
    if (!takes(message)) {
        ++m_dropped;
        m_releaseLost = m_releaseLost || releases(message);
        return;
    }
    if (message.kind == MidiMessage::Kind::down || message.kind == MidiMessage::Kind::up)
        m_held.note(message.data1, message.kind == MidiMessage::Kind::down);
    m_waiting.push_back(message);
    if (!m_call)
        m_call = RunLoop::main().callAfter(0, [this] { drain(); });
}

/// A drain that was not the run loop's leaves its call to find nothing, or what came since.
void MidiNoteQueue::drain() {
    bool releaseLost = false;
    {
        std::lock_guard guard(m_mutex);
        releaseLost = std::exchange(m_releaseLost, false);
        RunLoop::main().cancel(std::exchange(m_call, 0));
        std::swap(m_waiting, m_performing);
    }
    for (const MidiMessage& message : m_performing)
        m_perform(message);
    m_performing.clear();
    if (releaseLost)
        m_perform({.kind = MidiMessage::Kind::flood});
}

std::uint64_t MidiNoteQueue::dropped() const {
    std::lock_guard guard(m_mutex);
    return m_dropped;
}
