#pragma once

#include "QrMidi.h"

/// One listener for all sources of a hub, as a convenience. [main] but for what is heard.
class QrMidiAllSources : public QrMidiDelegate, public QrMidiSourceDelegate {
  public:
    ~QrMidiAllSources() override { setMidi(nullptr); }

    QrMidi* midi() const { return m_midi; }
    /// Leaves the hub before, whose delegate is cleared, and listens to all sources that the new
    /// one has by now. To hear of later ones, be made its delegate.
    void setMidi(QrMidi* midi);

    /// Not retained; hears what all sources send. Set while no source is listened to.
    QrMidiSourceDelegate* delegate() const { return m_delegate; }
    void setDelegate(QrMidiSourceDelegate* delegate) { m_delegate = delegate; }

    void sourceAdded(QrMidi& midi, QrMidiSource& source) override;
    void midiReceived(QrMidiSource& source, const MIDIPacketList& list) override;

  private:
    QrMidi* m_midi = nullptr;  // not owned; outlives this, or is set to null before it goes
    std::atomic<QrMidiSourceDelegate*> m_delegate{nullptr};
};
