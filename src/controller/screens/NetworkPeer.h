#pragma once

#include <QObject>
#include <QString>

/// Somebody in the network, as rows and questions show them. A plain value of plain texts.
struct NetworkPeer {
    Q_GADGET
    Q_PROPERTY(quint32 id MEMBER id)
    Q_PROPERTY(QString name MEMBER name)
    Q_PROPERTY(QString address MEMBER address)

  public:
    quint32 id = 0;   // 0: takes no part
    QString name;     // as they call themselves, or else the address; never empty
    QString address;  // what is connected to

    bool operator==(const NetworkPeer&) const = default;
};
