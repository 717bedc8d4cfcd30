#include "screens/WaveTime.h"

#include <QLatin1Char>

QString WaveTime::text(int frames) {
    constexpr qint64 kFramesPerSecond = 44100;
    const qint64 all = (qint64{frames} * 1000 + kFramesPerSecond / 2) / kFramesPerSecond;
    return QStringLiteral("%1:%2.%3")
        .arg(all / 60000)
        .arg(all / 1000 % 60, 2, 10, QLatin1Char('0'))
        .arg(all % 1000, 3, 10, QLatin1Char('0'));
}
