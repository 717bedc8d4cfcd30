#pragma once

#include <bitset>
#include <cstdint>
#include <vector>

#include "midi/HeldNotes.h"

/// Makes a standard MIDI file of one track (format 0; MIDI Manufacturers Association, "Standard
/// MIDI Files 1.0", 1996) of notes on channel 1, as they are played. 960 ticks a quarter note at
/// 120 beats a minute make a tick of 0.52 ms. Times are seconds from the start, never before the
/// time of the call before. [any thread but render], one at a time.
class MidiFileWriter {
  public:
    static constexpr std::size_t kMostEvents = 1'000'000;

    MidiFileWriter();

    /// A key of 0 to 127 with a velocity of 1 to 127. One that sounds is released first. Does
    /// nothing once the file is full.
    void noteOn(double seconds, std::uint8_t key, std::uint8_t velocity);
    /// Nothing for a key that does not sound.
    void noteOff(double seconds, std::uint8_t key);

    /// Whether notes were left out because there are too many.
    bool isCut() const { return m_cut; }
    /// The whole file as it is when it ends at that time: what still sounds is released there.
    std::vector<std::uint8_t> bytes(double seconds) const;

  private:
    void add(std::uint64_t tick, std::uint8_t status, std::uint8_t key, std::uint8_t velocity);

    std::vector<std::uint8_t> m_track;
    std::uint64_t m_tick = 0;  // of the last event
    std::size_t m_events = 0;
    std::bitset<HeldNotes::kMost> m_sounding;
    bool m_cut = false;
};
