#include "screens/MidiSetup.h"

#include "folders/Folders.h"

MidiSetup::MidiSetup(MidiInput& input, MidiControls& controls, DialBank& dials,
                     UserDefaults& defaults)
    : m_hub(input.hub()), m_network(m_hub, defaults), m_controllers(controls, dials) {
    auto& centre = NotificationCentre::defaultCentre();
    const auto tell = [this] { Q_EMIT sourcesChanged(); };
    m_observers = {centre.addObserver(kQrMidiSourceAdded, tell),
                   centre.addObserver(kQrMidiSourceRemoved, tell)};
}

MidiSetup::~MidiSetup() {
    for (const auto observer : m_observers)
        NotificationCentre::defaultCentre().removeObserver(observer);
}

QStringList MidiSetup::sources() const {
    QStringList names;
    for (const auto& source : m_hub.sources())
        names.append(QString::fromStdString(source->name()));
    return names;
}

QString MidiSetup::port() const {
    return QString::fromStdString(m_hub.virtualEndpointName().value_or(Folders::applicationName()));
}
