#pragma once

#include <array>
#include <cstdint>
#include <mutex>
#include <string>
#include <vector>

#include "QrMidi.h"

/// Prints what every MIDI source sends, a line for each message, and which sources come and go.
/// What arrives faster than it can be printed is counted, not kept. [main] but for what is heard.
class MidiMonitor final : private QrMidiDelegate, private QrMidiSourceDelegate {
  public:
    /// `defaults` outlive this.
    explicit MidiMonitor(UserDefaults& defaults);

    /// Prints what has arrived.
    void print();
    /// A line of somebody else's, now.
    void say(const std::string& who, const std::string& what) const;

  private:
    struct Message {
        double seconds = 0;  // on the system's monotonic clock
        std::array<char, 64> source{};
        std::array<std::uint8_t, 16> bytes{};  // as many as fit
        std::size_t length = 0;
    };
    static constexpr std::size_t kCapacity = 4096;

    void sourceAdded(QrMidi& midi, QrMidiSource& source) override;
    void sourceRemoved(QrMidi& midi, QrMidiSource& source) override;
    void midiReceived(QrMidiSource& source, const MIDIPacketList& list) override;
    void keep(const Message& message);
    void printLine(double moment, const std::string& who, const std::string& what) const;

    const double m_started;
    std::mutex m_mutex;  // held for no longer than it takes to add or swap
    std::vector<Message> m_waiting;
    std::uint64_t m_missed = 0;
    std::vector<Message> m_printing;  // [main]
    QrMidi m_hub;                     // goes first: then nothing more is heard
};
