#include "screens/NetworkSetup.h"

#include <array>

#include "screens/AudioOption.h"

namespace {

constexpr std::array kOfferedModes{NetworkMode::off, NetworkMode::ask, NetworkMode::nearby};

/// What others call themselves, without what steers a text rather than being read in it.
QString plain(const std::string& text) {
    QString plain;
    for (const QChar c : QString::fromStdString(text)) {
        const bool steers =
            c.category() == QChar::Other_Control || c.category() == QChar::Other_Format ||
            c.category() == QChar::Separator_Line || c.category() == QChar::Separator_Paragraph;
        plain += steers ? QChar(' ') : c;
    }
    return plain.simplified();
}

QVariantList rows(const std::vector<MIDINetworkSession::Peer>& peers) {
    QVariantList rows;
    for (const auto& peer : peers) {
        const QString name = plain(peer.name);
        const QString address = plain(peer.address);
        rows.append(
            QVariant::fromValue(NetworkPeer{peer.id, name.isEmpty() ? address : name, address}));
    }
    return rows;
}

NetworkPeer first(const QVariantList& peers) {
    return peers.isEmpty() ? NetworkPeer{} : peers.first().value<NetworkPeer>();
}

}  // namespace

NetworkSetup::NetworkSetup(QrMidi& hub, UserDefaults& defaults, MIDINetworkSession& session)
    : m_hub(hub),
      m_defaults(defaults),
      m_session(session),
      m_mode(keptNetworkMode(defaults)),
      m_observer(NotificationCentre::defaultCentre().addObserver(kMIDINetworkSessionChanged,
                                                                 [this] { look(); })) {
    useNetworkMode(m_hub, m_mode);
    look();
}

NetworkSetup::~NetworkSetup() {
    NotificationCentre::defaultCentre().removeObserver(m_observer);
}

void NetworkSetup::look() {
    const MIDINetworkSession& now = m_session;
    Seen seen{
        now.isEnabled(),         now.port(),           plain(now.localName()), plain(now.problem()),
        rows(now.connections()), rows(now.requests()), rows(now.found())};
    if (seen == m_seen)
        return;
    m_seen = std::move(seen);
    Q_EMIT changed();
}

QVariantList NetworkSetup::modes() const {
    const std::array<std::array<QString, 3>, 3> texts{{
        {"off", tr("Off"), tr("nobody plays over the network")},
        {"ask", tr("Ask"), tr("you are asked about everybody new")},
        {"nearby", tr("Nearby"), tr("everybody on your own network")},
    }};
    QVariantList options;
    for (const NetworkMode mode : kOfferedModes) {
        const auto& [name, title, detail] = texts[std::size_t(mode)];
        options.append(QVariant::fromValue(AudioOption{name, title, detail, mode == m_mode}));
    }
    return options;
}

NetworkSetup::Lamp NetworkSetup::lamp() const {
    if (!m_seen.enabled)
        return Lamp::off;
    if (!m_seen.connections.isEmpty())
        return Lamp::playing;
    return problem().isEmpty() ? Lamp::waiting : Lamp::problem;
}

QString NetworkSetup::state() const {
    const auto count = m_seen.connections.size();
    if (!m_seen.enabled)
        return tr("Off");
    if (count == 1)
        return tr("%1 takes part").arg(first(m_seen.connections).name);
    if (count > 1)
        return tr("%1 take part").arg(count);
    return m_seen.port ? tr("Open, nobody takes part") : tr("Not open");
}

QString NetworkSetup::problem() const {
    return m_refusal.isEmpty() ? m_seen.problem : m_refusal;
}

QString NetworkSetup::place() const {
    return m_seen.enabled && m_seen.port ? tr("Others see \u201c%1\u201d, port %2.")
                                               .arg(m_seen.localName, QString::number(m_seen.port))
                                         : QString();
}

QString NetworkSetup::question() const {
    if (m_seen.requests.isEmpty())
        return {};
    const NetworkPeer peer = first(m_seen.requests);
    return tr("Let \u201c%1\u201d (%2) play over the network?").arg(peer.name, peer.address);
}

void NetworkSetup::chooseMode(const QString& name) {
    for (const NetworkMode mode : kOfferedModes) {
        if (modes()[qsizetype(mode)].value<AudioOption>().name == name)
            m_mode = mode;
    }
    keepNetworkMode(m_defaults, m_mode);
    m_refusal.clear();
    useNetworkMode(m_hub, m_mode);
    if (m_mode == NetworkMode::nearby) {
        for (const QVariant& request : QVariantList(m_seen.requests))
            answer(request.value<NetworkPeer>().id, true);
    }
    look();
    Q_EMIT changed();
}

bool NetworkSetup::connectTo(const QString& address) {
    m_refusal = plain(m_session.connect(address.toStdString()));
    look();
    Q_EMIT changed();
    return m_refusal.isEmpty();
}

void NetworkSetup::disconnectFrom(quint32 connection) {
    m_session.disconnect(connection);
}

void NetworkSetup::answer(quint32 request, bool allowed) {
    m_session.answer(request, allowed);
}

void NetworkSetup::answerFirst(bool allowed) {
    if (!m_seen.requests.isEmpty())
        answer(first(m_seen.requests).id, allowed);
}
