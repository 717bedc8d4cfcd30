#pragma once

#include <memory>
#include <string>

#include "Options.h"
#include "midi/MidiTimeline.h"
#include "startup/Instrument.h"

/// A song and an instrument set up to play it, made from a user's words.
class SongSession {
  public:
    /// Null after bad use or bad input, with `error` one line.
    static std::unique_ptr<SongSession> prepare(const Arguments& arguments, std::string& error);

    const MidiTimeline& timeline() const { return m_timeline; }
    Instrument& instrument() { return *m_instrument; }

  private:
    SongSession() = default;
    std::string readSong(const std::string& path);

    MidiTimeline m_timeline;
    std::unique_ptr<Instrument> m_instrument;
};

/// Sends a song's events to an instrument as its time comes, and releases all keys at its end.
class SongPlayer {
  public:
    SongPlayer(const MidiTimeline& timeline, Notes& notes) : m_timeline(timeline), m_notes(notes) {}

    /// Sends everything that lies before `frame`.
    void sendUntil(std::uint64_t frame);
    /// Whether all was sent and all keys released.
    bool ended() const { return m_ended; }
    /// Frame of what is to be sent next; of the end when only that is left.
    std::uint64_t nextFrame() const;

  private:
    const MidiTimeline& m_timeline;
    Notes& m_notes;
    std::size_t m_next = 0;
    bool m_ended = false;
};
