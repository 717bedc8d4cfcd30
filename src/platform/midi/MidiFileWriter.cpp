#include "midi/MidiFileWriter.h"

#include <algorithm>
#include <cmath>
#include <initializer_list>

namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr std::uint16_t kTicksPerQuarter = 960;
constexpr std::uint32_t kTempo = 500'000;  // microseconds a quarter note
constexpr double kTicksPerSecond = kTicksPerQuarter * 1e6 / kTempo;
constexpr std::uint64_t kLongestQuantity = 0x0FFFFFFF;  // 38 hours
constexpr std::uint8_t kNoteOff = 0x80;
constexpr std::uint8_t kNoteOn = 0x90;
constexpr std::uint8_t kReleaseVelocity = 64;  // "unknown"

void append(Bytes& bytes, std::initializer_list<int> more) {
    for (const int byte : more)
        bytes.push_back(static_cast<std::uint8_t>(byte));
}

void appendNumber(Bytes& bytes, std::uint64_t number, int size) {
    for (int shift = 8 * (size - 1); shift >= 0; shift -= 8)
        bytes.push_back(static_cast<std::uint8_t>(number >> shift));
}

/// Seven bits a byte, the highest first; all but the last have their top bit set.
void appendQuantity(Bytes& bytes, std::uint64_t number) {
    number = std::min(number, kLongestQuantity);
    for (int shift = 21; shift > 0; shift -= 7) {
        if (number >> shift)
            bytes.push_back(static_cast<std::uint8_t>(0x80 | ((number >> shift) & 0x7F)));
    }
    bytes.push_back(static_cast<std::uint8_t>(number & 0x7F));
}

std::uint64_t tickOf(double seconds) {
    return static_cast<std::uint64_t>(std::llround(std::max(seconds, 0.0) * kTicksPerSecond));
}

}  // namespace

MidiFileWriter::MidiFileWriter() {
    append(m_track, {0, 0xFF, 0x51, 3});  // at the beginning: set tempo
    appendNumber(m_track, kTempo, 3);
}

void MidiFileWriter::noteOn(double seconds, std::uint8_t key, std::uint8_t velocity) {
    noteOff(seconds, key);
    // Room for the releases of all that sounds is always left.
    if (m_events + HeldNotes::kMost >= kMostEvents) {
        m_cut = true;
        return;
    }
    add(tickOf(seconds), kNoteOn, key, velocity);
    m_sounding.set(key);
}

void MidiFileWriter::noteOff(double seconds, std::uint8_t key) {
    if (!m_sounding.test(key))
        return;
    add(tickOf(seconds), kNoteOff, key, kReleaseVelocity);
    m_sounding.reset(key);
}

void MidiFileWriter::add(std::uint64_t tick, std::uint8_t status, std::uint8_t key,
                         std::uint8_t velocity) {
    tick = std::max(tick, m_tick);
    appendQuantity(m_track, tick - m_tick);
    append(m_track, {status, key, velocity});
    m_tick = tick;
    ++m_events;
}

std::vector<std::uint8_t> MidiFileWriter::bytes(double seconds) const {
    MidiFileWriter whole = *this;
    for (std::size_t key = 0; key < m_sounding.size(); ++key)
        whole.noteOff(seconds, static_cast<std::uint8_t>(key));
    const std::uint64_t end = tickOf(seconds);
    appendQuantity(whole.m_track, end > whole.m_tick ? end - whole.m_tick : 0);
    append(whole.m_track, {0xFF, 0x2F, 0});  // end of track

    Bytes file;
    append(file, {'M', 'T', 'h', 'd'});
    appendNumber(file, 6, 4);
    for (const std::uint64_t number : {0, 1, +kTicksPerQuarter})  // format, tracks, division
        appendNumber(file, number, 2);
    append(file, {'M', 'T', 'r', 'k'});
    appendNumber(file, whole.m_track.size(), 4);
    file.insert(file.end(), whole.m_track.begin(), whole.m_track.end());
    return file;
}
