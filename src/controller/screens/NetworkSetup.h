#pragma once

#include <QObject>
#include <QVariantList>

#include "midi/MidiNetworkSession.h"
#include "midi/NetworkMode.h"
#include "notifications/NotificationCentre.h"
#include "screens/NetworkPeer.h"

/// MIDI over the network as the screen shows it: who may take part, who does, who asks to, and who
/// is nearby. Follows the system's session. A choice takes effect at once and is kept. [main]
class NetworkSetup : public QObject {
    Q_OBJECT
    Q_PROPERTY(QVariantList modes READ modes NOTIFY changed)
    Q_PROPERTY(bool enabled READ enabled NOTIFY changed)
    Q_PROPERTY(Lamp lamp READ lamp NOTIFY changed)
    Q_PROPERTY(QString state READ state NOTIFY changed)
    Q_PROPERTY(QString problem READ problem NOTIFY changed)
    Q_PROPERTY(QString place READ place NOTIFY changed)
    Q_PROPERTY(QVariantList connections READ connections NOTIFY changed)
    Q_PROPERTY(QVariantList requests READ requests NOTIFY changed)
    Q_PROPERTY(QVariantList found READ found NOTIFY changed)
    Q_PROPERTY(QString question READ question NOTIFY changed)

  public:
    enum class Lamp { off, waiting, playing, problem };
    Q_ENUM(Lamp)

    /// Uses the mode that was kept. `session` is the system's but in tests.
    NetworkSetup(QrMidi& hub, UserDefaults& defaults,
                 MIDINetworkSession& session = MIDINetworkSession::defaultSession());
    ~NetworkSetup() override;

    /// AudioOptions.
    QVariantList modes() const;
    bool enabled() const { return m_seen.enabled; }
    /// Off; open, or about to be; somebody takes part; not open though it should be.
    Lamp lamp() const;
    /// The same in words.
    QString state() const;
    /// Why it is not open, or why somebody was not reached; else empty.
    QString problem() const;
    /// How others find it; empty while it is not open.
    QString place() const;

    /// NetworkPeers.
    QVariantList connections() const { return m_seen.connections; }
    QVariantList requests() const { return m_seen.requests; }
    QVariantList found() const { return m_seen.found; }
    /// What the player is asked about the first of those who ask; empty while nobody does.
    QString question() const;

    /// By the name of an option. Who waits for an answer is let in by "nearby".
    Q_INVOKABLE void chooseMode(const QString& name);
    /// HOST, HOST:PORT or [IPv6]:PORT. False if that was not understood.
    Q_INVOKABLE bool connectTo(const QString& address);
    Q_INVOKABLE void disconnectFrom(quint32 connection);
    Q_INVOKABLE void answer(quint32 request, bool allowed);
    /// The first one of those who ask.
    Q_INVOKABLE void answerFirst(bool allowed);

  Q_SIGNALS:
    void changed();

  private:
    /// What the session said when it was looked at last.
    struct Seen {
        bool enabled = false;
        int port = 0;
        QString localName, problem;
        QVariantList connections, requests, found;
        bool operator==(const Seen&) const = default;
    };

    void look();

    QrMidi& m_hub;
    UserDefaults& m_defaults;
    MIDINetworkSession& m_session;
    NetworkMode m_mode;
    Seen m_seen;
    QString m_refusal;  // of the last address
    NotificationCentre::Token m_observer;
};
