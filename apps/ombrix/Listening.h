#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "audition/Audition.h"

/// What a user wants to hear of a sound, and how far that has come: it is played, or places are
/// visited one after the other. Time is seconds from the start, whoever counts them.
class Listening {
  public:
    struct Wish {
        Audition::Playing playing;
        std::vector<double> places;  // seconds; none: played
        double pace = 0.05;          // seconds from place to place
        float scrubGain = 0.5f;
    };

    Listening(Audition& audition, Audition::Sound sound, Wish wish);

    /// Begins, and later visits the places that are due.
    void goOnTo(double seconds);
    /// When there is something to do next; infinity when nothing is.
    double nextDue() const;
    /// Whether the sound, or the last grain, has been played to its end.
    bool ended() const;
    /// Place and level, for a user to look at.
    std::string status() const;
    /// How long all of it is, where that is known.
    std::optional<std::uint64_t> frames() const;

  private:
    bool scrubbing() const { return !m_wish.places.empty(); }

    Audition& m_audition;
    Audition::Sound m_sound;
    Wish m_wish;
    std::size_t m_visited = 0;
    bool m_begun = false;
};
