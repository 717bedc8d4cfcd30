#include "screens/RemainingTime.h"

#include <QCoreApplication>

#include "audiounits/StreamDescription.h"

namespace {

constexpr quint64 kBytesPerSecond = quint64(kGraphRate) * 2;

QString tr(const char* text) {
    return QCoreApplication::translate("RemainingTime", text);
}

}  // namespace

qint64 RemainingTime::seconds(quint64 bytes) {
    return static_cast<qint64>(bytes / kBytesPerSecond);
}

QString RemainingTime::text(qint64 seconds) {
    const qint64 minutes = seconds / 60;
    if (minutes >= 60)
        return tr("%1 h %2 min left").arg(minutes / 60).arg(minutes % 60);
    return minutes > 0 ? tr("%1 min left").arg(minutes) : tr("%1 s left").arg(seconds);
}
