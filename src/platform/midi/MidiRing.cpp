#include "midi/MidiRing.h"

#include <algorithm>
#include <cstring>
#include <utility>

std::size_t MidiRing::room() const noexcept {
    return kBytes -
           (m_written.load(std::memory_order_relaxed) - m_read.load(std::memory_order_acquire));
}

bool MidiRing::push(MIDITimeStamp time, std::span<const std::uint8_t> message) noexcept {
    const bool fits =
        message.size() <= kLongest && room() >= kReserve + kHeaderBytes + message.size();
    if (fits) {
        forEachMidiNote(message,
                        [this](MidiNoteEvent event) { m_held.note(event.note, event.down); });
        m_holdsMore = m_holdsMore || midiHoldsMore(message);
        write(time, message);
        return true;
    }
    m_dropped.fetch_add(1, std::memory_order_relaxed);
    forEachMidiNote(message, [&](MidiNoteEvent event) {
        if (!event.down)
            release(time, event.note);
    });
    return false;
}

void MidiRing::pushReleases(MIDITimeStamp time) noexcept {
    for (std::size_t note = 0; note < HeldNotes::kMost && m_held.any(); ++note)
        release(time, static_cast<std::uint8_t>(note));
    if (std::exchange(m_holdsMore, false))
        write(time, kMidiReleaseAll);
}

/// There is room: the reserve is as long as the releases of all notes, and of the rest.
void MidiRing::release(MIDITimeStamp time, std::uint8_t note) noexcept {
    if (!m_held.holds(note))
        return;
    m_held.note(note, false);
    write(time, std::array<std::uint8_t, kNoteBytes>{0x80, note, 0});
}

void MidiRing::write(MIDITimeStamp time, std::span<const std::uint8_t> message) noexcept {
    const std::size_t at = m_written.load(std::memory_order_relaxed);
    const auto length = static_cast<std::uint32_t>(message.size());
    put(&time, sizeof time, at);
    put(&length, sizeof length, at + sizeof time);
    put(message.data(), length, at + kHeaderBytes);
    m_written.store(at + kHeaderBytes + length, std::memory_order_release);
}

std::optional<MidiRing::Message> MidiRing::pop(std::span<std::uint8_t> memory) noexcept {
    const std::size_t at = m_read.load(std::memory_order_relaxed);
    if (at == m_written.load(std::memory_order_acquire))
        return std::nullopt;
    MIDITimeStamp time;
    std::uint32_t length;
    get(&time, sizeof time, at);
    get(&length, sizeof length, at + sizeof time);
    get(memory.data(), length, at + kHeaderBytes);
    m_read.store(at + kHeaderBytes + length, std::memory_order_release);
    return Message{time, memory.first(length)};
}

void MidiRing::put(const void* from, std::size_t bytes, std::size_t at) noexcept {
    const std::size_t begin = at % kBytes;
    const std::size_t first = std::min(bytes, kBytes - begin);
    const auto* const source = static_cast<const std::uint8_t*>(from);
    std::copy_n(source, first, m_bytes->begin() + static_cast<std::ptrdiff_t>(begin));
    std::copy_n(source + first, bytes - first, m_bytes->begin());
}

void MidiRing::get(void* to, std::size_t bytes, std::size_t at) const noexcept {
    const std::size_t begin = at % kBytes;
    const std::size_t first = std::min(bytes, kBytes - begin);
    auto* const target = static_cast<std::uint8_t*>(to);
    std::copy_n(m_bytes->begin() + static_cast<std::ptrdiff_t>(begin), first, target);
    std::copy_n(m_bytes->begin(), bytes - first, target + first);
}
