#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "midi/MidiFile.h"

/// A key going down or up.
struct MidiTimelineEvent {
    std::uint64_t frame = 0;  // at 44100 Hz
    bool on = false;
    std::uint8_t key = 0;       // MIDI note 0 to 127
    std::uint8_t velocity = 0;  // of a note-on: 1 to 127

    bool operator==(const MidiTimelineEvent&) const = default;
};

/// The notes of a MIDI file in the order in which they are to be sent: by tick, then track, then
/// place in the track. Tempo changes of any track hold for all from their tick on; the tracks of
/// a format 2 file follow each other, each from the End of Track of the one before. A note-on with
/// velocity 0 is a note-off. Frames are the floor of the exact time, so that nothing adds up.
struct MidiTimeline {
    /// 288 days. A file that claims to last longer is refused.
    static constexpr std::uint64_t kMaximumFrames = std::uint64_t(1) << 40;

    std::vector<MidiTimelineEvent> events;
    std::uint64_t endFrame = 0;  // the last End of Track

    /// On failure `error` is a reason without the file's name. [any thread but render]
    static std::optional<MidiTimeline> make(const MidiFile& file, std::string& error);
};
