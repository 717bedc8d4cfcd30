#pragma once

#include <atomic>
#include <memory>
#include <mutex>
#include <vector>

#include "QrMidiConnection.h"

class QrMidiSource;

/// Who hears a source.
class QrMidiSourceDelegate {
  public:
    virtual ~QrMidiSourceDelegate() = default;
    /// [MIDI thread] Valid during the call only. Not a place to call the hub from.
    virtual void midiReceived(QrMidiSource& source, const MIDIPacketList& list) = 0;
};

/// Where MIDI comes from. Its listeners are told in the order in which they were added. The list is
/// replaced whole at each change, so the MIDI thread never walks one that changes.
class QrMidiSource : public QrMidiConnection {
  public:
    using QrMidiConnection::QrMidiConnection;

    /// Adds it unless it is there already; not retained. [any thread but render]
    void addDelegate(QrMidiSourceDelegate& delegate);
    /// When it returns no other thread is telling the listener anything, nor will. A listener may
    /// remove itself while it is told. [any thread but render]
    void removeDelegate(QrMidiSourceDelegate& delegate);
    std::vector<QrMidiSourceDelegate*> delegates() const { return *current(); }

    /// [MIDI thread] Tells every listener.
    void midiRead(const MIDIPacketList& list);

  private:
    using Delegates = std::vector<QrMidiSourceDelegate*>;
    std::shared_ptr<const Delegates> current() const;

    mutable std::mutex m_mutex;  // held while the list is copied or replaced, never while telling
    std::shared_ptr<const Delegates> m_delegates = std::make_shared<const Delegates>();
    std::atomic<int> m_reading{0};  // threads that are telling
};
