#pragma once

#include <functional>
#include <mutex>
#include <vector>

#include "midi/HeldNotes.h"
#include "midi/MidiTypes.h"
#include "runloop/RunLoop.h"

/// One message on its way to the notes.
struct MidiNoteMessage {
    enum class Kind : std::uint8_t { down, up, aftertouch };
    Kind kind = Kind::up;
    std::uint8_t note = 0;
    std::uint8_t velocity = 0;
    MIDIEndpointRef source = 0;
};

/// Takes notes from the MIDI thread to the main thread, in order and without waiting for it. It
/// never grows: once it is nearly full it takes only the releases of notes that it has let in, for
/// which there is always room, and counts what it drops.
class MidiNoteQueue {
  public:
    using Perform = std::function<void(const MidiNoteMessage&)>;
    static constexpr std::size_t kCapacity = 8192;

    /// `perform` is called on the main thread for each message.
    explicit MidiNoteQueue(Perform perform);
    /// [main] Nothing may be pushed any more.
    ~MidiNoteQueue();

    /// [MIDI thread]
    void push(const MidiNoteMessage& message);
    /// [main] Performs all that has arrived by now; the main run loop does so by itself.
    void drain();
    /// [any thread but render]
    std::uint64_t dropped() const;

  private:
    bool takes(const MidiNoteMessage& message) const;

    const Perform m_perform;
    mutable std::mutex m_mutex;  // held for no longer than it takes to add or swap
    std::vector<MidiNoteMessage> m_waiting;
    std::vector<MidiNoteMessage> m_performing;  // [main]
    HeldNotes m_held;
    std::uint64_t m_dropped = 0;
    RunLoop::Token m_call = 0;  // 0: none is due
};
