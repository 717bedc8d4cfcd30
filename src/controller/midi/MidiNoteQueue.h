#pragma once

#include <functional>
#include <mutex>
#include <vector>

#include "midi/HeldNotes.h"
#include "midi/MidiMessage.h"
#include "runloop/RunLoop.h"

/// Takes messages from the MIDI thread to the main thread, in order and without waiting for it. It
/// never grows: once it is nearly full it takes only the releases of notes that it has let in, for
/// which there is always room, and counts what it drops; where that were other releases, of pedals
/// and the like, one message behind all others tells of it. Of a wheel or dial that moves on before
/// anyone has looked only the last position is kept.
class MidiNoteQueue {
  public:
    using Perform = std::function<void(const MidiMessage&)>;
    static constexpr std::size_t kCapacity = 8192;

    /// `perform` is called on the main thread for each message.
    explicit MidiNoteQueue(Perform perform);
    /// [main] Nothing may be pushed any more.
    ~MidiNoteQueue();

    /// [MIDI thread]
    void push(const MidiMessage& message);
    /// [main] Performs all that has arrived by now; the main run loop does so by itself.
    void drain();
    /// [any thread but render]
    std::uint64_t dropped() const;

  private:
    bool takes(const MidiMessage& message) const;

    const Perform m_perform;
    mutable std::mutex m_mutex;  // held for no longer than it takes to add or swap
    std::vector<MidiMessage> m_waiting;
    std::vector<MidiMessage> m_performing;  // [main]
    HeldNotes m_held;
    std::uint64_t m_dropped = 0;
    bool m_releaseLost = false;
    RunLoop::Token m_call = 0;  // 0: none is due
};
