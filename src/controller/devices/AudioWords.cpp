#include "devices/AudioWords.h"

#include <QCoreApplication>

namespace {

struct Words {
    Q_DECLARE_TR_FUNCTIONS(AudioWords)
};

QString milliseconds(double seconds) {
    return QString::number(seconds * 1000, 'f', 1);
}

bool isClock(const AudioDeviceInfo& device) {
    return device.name == "clock";
}

QString backEnd(const AudioDeviceInfo& device) {
    if (device.name == "jack")
        return Words::tr("JACK");
    if (device.name.starts_with("pulse:"))
        return Words::tr("PulseAudio");
    return device.name.starts_with("alsa:") ? Words::tr("ALSA")
                                            : QString::fromStdString(device.description);
}

QString absence(const AudioDeviceState& presence, const std::string& wanted) {
    if (wanted == "clock")
        return Words::tr("Playing without sound, as chosen.");
    if (presence.presence == AudioDeviceState::Presence::lost)
        return Words::tr("The device %1 went away; looking for it every second.")
            .arg(QString::fromStdString(presence.name));
    if (wanted.empty())
        return Words::tr("No sound device answers; looking for one every second.");
    return Words::tr("The device %1 does not answer; looking for it every second.")
        .arg(QString::fromStdString(wanted));
}

}  // namespace

QString AudioWords::deviceTitle(const AudioDeviceInfo& device) {
    if (isClock(device))
        return Words::tr("No Sound");
    if (!device.name.starts_with("pulse:") && !device.name.starts_with("alsa:"))
        return backEnd(device);
    const std::string which = device.name.starts_with("pulse:")
                                  ? device.description
                                  : device.name.substr(device.name.find(':') + 1);
    return Words::tr("%1 (%2)").arg(backEnd(device), QString::fromStdString(which));
}

QString AudioWords::state(const AudioDeviceInfo& playing, const AudioDeviceState& presence,
                          const std::string& wanted) {
    if (playing.name.empty() || playing.rate == 0)
        return Words::tr("The sound is switched off.");
    if (isClock(playing))
        return absence(presence, wanted);
    return Words::tr("Playing through %1 at %2 Hz, %3 frames, %4 ms.")
        .arg(deviceTitle(playing), QString::number(playing.rate, 'f', 0),
             QString::number(playing.periodFrames), milliseconds(playing.latencySeconds));
}

QString AudioWords::health(const AudioDeviceInfo& playing) {
    if (isClock(playing) || playing.rate == 0)
        return {};
    const QString priority =
        playing.realTime
            ? Words::tr("Real-time priority was granted.")
            : Words::tr("Real-time priority was not granted: short buffers may crackle.");
    if (playing.xruns == 0)
        return priority + ' ' + Words::tr("No period was lost.");
    return priority + ' ' +
           (playing.xruns == 1 ? Words::tr("One period was lost.")
                               : Words::tr("%1 periods were lost.").arg(playing.xruns));
}

QString AudioWords::period(std::uint32_t frames, double rate) {
    const QString count = Words::tr("%1 frames").arg(frames);
    return rate > 0 ? Words::tr("%1, %2 ms").arg(count, milliseconds(frames / rate)) : count;
}
