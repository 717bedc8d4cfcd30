#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

/// Why a MIDI file was refused. `offset` is that of the first byte that is wrong or missing.
struct MidiFileError {
    std::uint64_t offset = 0;
    std::string reason;
};

/// What a track says that matters here. Notes of all channels are alike.
struct MidiFileEvent {
    enum class Kind : std::uint8_t { noteOff, noteOn, tempo, endOfTrack };

    std::uint64_t tick = 0;  // since the start of its track
    Kind kind = Kind::noteOn;
    std::uint8_t key = 0;       // 0 to 127
    std::uint8_t velocity = 0;  // 0 to 127, as written: a note-on may hold 0
    std::uint32_t tempo = 0;    // microseconds a quarter note, 24 bits
};

/// How long a tick is: a part of a quarter note, whose length the tempo says, or of a film frame.
struct MidiDivision {
    bool isTimeCode = false;
    std::uint32_t ticks = 1;                 // a quarter note, or a frame, holds; at least 1
    std::uint32_t framesPerSecond = 24;      // time code only: this many frames
    std::uint32_t framesPerSecondUnder = 1;  // in this many seconds (30000 / 1001 for "29")
};

/// A standard MIDI file (MIDI Manufacturers Association, "Standard MIDI Files 1.0", 1996), reduced
/// to notes, tempo and ends of tracks. Every track's events are in order and end with its End of
/// Track.
struct MidiFile {
    static constexpr std::size_t kMaximumBytes = std::size_t(32) << 20;

    int format = 0;  // 0 and 1: the tracks sound together; 2: one after the other
    MidiDivision division;
    std::vector<std::vector<MidiFileEvent>> tracks;

    /// Believes no count and no length in the file: memory follows the bytes that are there.
    /// Running status is kept across meta and exclusive events. [any thread but render]
    static std::optional<MidiFile> parse(std::span<const std::uint8_t> bytes, MidiFileError& error);

    /// On failure `error` is one line with file, reason and, for a broken file, the byte offset.
    /// [any thread but render]
    static std::optional<MidiFile> read(const std::string& path, std::string& error);
};
