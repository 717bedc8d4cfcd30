#include "screens/DeviceNews.h"

#include "audiounits/devices/AudioDevices.h"

namespace {

constexpr double kLookSeconds = 1.0;

/// A line of the log as the player reads it.
QString asSentence(QString line) {
    line[0] = line[0].toUpper();
    return line + '.';
}

}  // namespace

DeviceNews::DeviceNews(Tell tell)
    : m_tell(std::move(tell)),
      m_looking(RunLoop::main().callEvery(kLookSeconds, [this] { look(); })) {}

DeviceNews::~DeviceNews() {
    RunLoop::main().cancel(m_looking);
}

void DeviceNews::look() {
    const AudioDeviceState now = AudioDevices::state();
    if (const QString line = news(m_seen, now); !line.isEmpty())
        m_tell(line.toStdString());
    m_seen = now;
}

QString DeviceNews::news(const AudioDeviceState& before, const AudioDeviceState& now) {
    using Presence = AudioDeviceState::Presence;
    const QString name = QString::fromStdString(now.name);
    if (now.presence == Presence::absent && before.presence != Presence::absent)
        return asSentence(QString::fromStdString(now.absence)) + ' ' +
               tr("Connect one, or choose another in Settings.");
    if (now.presence == Presence::lost && before.presence != Presence::lost)
        return tr("The sound device %1 was lost; it plays again as soon as it is back.").arg(name);
    if (now.presence != Presence::playing)
        return {};
    if (before.presence == Presence::absent || before.presence == Presence::lost)
        return tr("Playing through %1.").arg(name);
    if (now.losses > before.losses)
        return tr("The sound device was lost for a moment; playing through %1.").arg(name);
    return {};
}
