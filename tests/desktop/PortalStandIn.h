#pragma once

#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusObjectPath>
#include <QDBusUnixFileDescriptor>
#include <QObject>
#include <QVariantMap>

/// The part of the desktop portal that opens files, as a service of its own on the session's bus: a
/// portal with a menu needs a whole desktop.
class PortalStandIn : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.OpenURI")

  public:
    PortalStandIn();
    ~PortalStandIn() override;

    /// The user has chosen a program (0), nothing (1), or it went wrong (2).
    void respond(uint answer);

    bool refuses = false;
    bool namesItself = false;  // as portals did before tokens
    QByteArray opened;         // content of the file that was handed over
    QVariantMap options;
    int calls = 0;

  public Q_SLOTS:
    QDBusObjectPath OpenFile(const QString& parent, const QDBusUnixFileDescriptor& file,
                             const QVariantMap& wishes);

  private:
    QDBusConnection m_bus;
    QString m_request;
};
