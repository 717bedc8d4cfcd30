#include "MidiMonitor.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <span>
#include <utility>

#include "midi/MidiPacketList.h"
#include "midi/MidiWords.h"
#include "runloop/Clock.h"
#include "text/UnicodeText.h"

MidiMonitor::MidiMonitor(UserDefaults& defaults) : m_started(Clock::monotonic()), m_hub(defaults) {
    m_waiting.reserve(kCapacity);
    m_printing.reserve(kCapacity);
    m_hub.setDelegate(this);
}

void MidiMonitor::sourceAdded(QrMidi&, QrMidiSource& source) {
    source.addDelegate(*this);
    say(source.name(), "is there");
}

void MidiMonitor::sourceRemoved(QrMidi&, QrMidiSource& source) {
    print();
    say(source.name(), "is gone");
}

/// [MIDI thread] Takes no memory.
void MidiMonitor::midiReceived(QrMidiSource& source, const MIDIPacketList& list) {
    const MIDIPacket* packet = list.packet;
    for (std::uint32_t left = list.numPackets; left > 0; --left, packet = MIDIPacketNext(packet)) {
        Message message;
        message.seconds = static_cast<double>(packet->timeStamp) * 1e-9;
        source.name().copy(message.source.data(), message.source.size() - 1);
        for (auto bytes = MIDIPacketData(*packet); !bytes.empty();
             bytes = bytes.subspan(message.length)) {
            message.length = MidiWords::firstMessage(bytes);
            const std::size_t kept = std::min(message.length, message.bytes.size());
            std::ranges::copy(bytes.first(kept), message.bytes.begin());
            keep(message);
        }
    }
}

void MidiMonitor::keep(const Message& message) {
    const std::lock_guard guard(m_mutex);
    if (m_waiting.size() < kCapacity)
        m_waiting.push_back(message);
    else
        ++m_missed;
}

void MidiMonitor::print() {
    std::uint64_t missed = 0;
    {
        const std::lock_guard guard(m_mutex);
        std::swap(m_waiting, m_printing);
        missed = std::exchange(m_missed, 0);
    }
    for (const Message& message : m_printing) {
        const std::size_t kept = std::min(message.length, message.bytes.size());
        printLine(message.seconds, message.source.data(),
                  MidiWords::of(std::span(message.bytes).first(kept), message.length));
    }
    m_printing.clear();
    if (missed > 0)
        say("", std::to_string(missed) + " more messages, faster than they can be shown");
    std::fflush(stdout);
}

void MidiMonitor::say(const std::string& who, const std::string& what) const {
    printLine(Clock::monotonic(), who, what);
    std::fflush(stdout);
}

/// Names come from outside: they must not steer a terminal.
void MidiMonitor::printLine(double moment, const std::string& who, const std::string& what) const {
    std::printf("%9.3f  %-24s  %s\n", std::max(moment - m_started, 0.0),
                UnicodeText::withoutControls(who).c_str(), what.c_str());
}
