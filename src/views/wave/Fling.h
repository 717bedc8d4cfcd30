#pragma once

#include <array>
#include <cstdint>

/// A thing that was thrown: how fast it left the finger, and how it slows down. Milliseconds of any
/// one clock, points. [any thread, one at a time]
class Fling {
  public:
    /// The finger is put down or takes over.
    void begin(std::uint64_t time, double x);
    void moved(std::uint64_t time, double x);
    /// Lets go. Whether it flies on; a finger that rested first throws nothing.
    bool release(std::uint64_t time);

    bool flying() const { return m_velocity != 0; }
    void stop() { m_velocity = 0; }
    /// How far it goes in so many seconds.
    double step(double seconds);

  private:
    struct Place {
        std::uint64_t time;
        double x;
    };
    static constexpr std::size_t kPlaces = 16;
    const Place& ago(std::size_t moves) const { return m_places[(m_count - 1 - moves) % kPlaces]; }

    std::array<Place, kPlaces> m_places{};  // the latest moves, in a ring
    std::size_t m_count = 0;                // of all moves
    double m_velocity = 0;                  // points per second
};
