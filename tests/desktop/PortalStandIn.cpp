#include "PortalStandIn.h"

#include <QDBusMessage>
#include <QFile>

PortalStandIn::PortalStandIn()
    : m_bus(QDBusConnection::connectToBus(QDBusConnection::SessionBus, "portal")) {
    m_bus.registerObject("/org/freedesktop/portal/desktop", this, QDBusConnection::ExportAllSlots);
    m_bus.registerService("org.freedesktop.portal.Desktop");
}

PortalStandIn::~PortalStandIn() {
    m_bus.unregisterService("org.freedesktop.portal.Desktop");
    QDBusConnection::disconnectFromBus("portal");
}

QDBusObjectPath PortalStandIn::OpenFile(const QString&, const QDBusUnixFileDescriptor& file,
                                        const QVariantMap& wishes) {
    ++calls;
    if (refuses) {
        sendErrorReply(QDBusError::AccessDenied, "no");
        return QDBusObjectPath("/");
    }
    QFile content;
    if (content.open(file.fileDescriptor(), QIODevice::ReadOnly))
        opened = content.readAll();
    options = wishes;
    QString sender = message().service().mid(1);
    m_request = "/org/freedesktop/portal/desktop/request/" + sender.replace('.', '_') + '/' +
                (namesItself ? QString("t7") : wishes["handle_token"].toString());
    return QDBusObjectPath(m_request);
}

void PortalStandIn::respond(uint answer) {
    QDBusMessage signal =
        QDBusMessage::createSignal(m_request, "org.freedesktop.portal.Request", "Response");
    signal << answer << QVariantMap();
    m_bus.send(signal);
}
