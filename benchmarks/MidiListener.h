#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <vector>

#include "midi/MidiInput.h"

using Steady = std::chrono::steady_clock;

/// CPU time of this process so far, in seconds.
double cpuSeconds();
/// Memory of this process in use now.
long residentKilobytes();

/// Milliseconds that notes took, for a report.
class NoteTimes {
  public:
    /// In a storm its own memory would grow: only the first ones are taken.
    void add(double milliseconds) {
        if (m_milliseconds.size() < kMost)
            m_milliseconds.push_back(milliseconds);
    }
    /// Median, 99.9th percentile and the longest; `what` says between which moments.
    void print(const char* what);

  private:
    static constexpr std::size_t kMost = 10000;
    std::vector<double> m_milliseconds;
};

/// What the instrument's window is to MIDI: its notes, on voices that nobody hears, and a main
/// loop that sleeps until a call is due or somebody has added one.
class MidiListener {
  public:
    explicit MidiListener(NotesDelegate& delegate);
    ~MidiListener() { RunLoop::main().setWaker(nullptr); }

    MidiInput& midi() { return m_midi; }
    /// Keys that still sound.
    long notesLeft() const;
    template <typename Condition>
    void turnUntil(Condition condition) {
        while (!condition())
            turn();
    }
    void turnFor(double seconds);

  private:
    void turn();

    UserDefaults m_defaults{""};
    Voices m_voices;
    Notes m_notes{m_voices};
    MidiInput m_midi{m_defaults};
    std::mutex m_mutex;
    std::condition_variable m_added;
    bool m_woken = false;
};
