#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <cstdio>

#include "CommandFrame.h"
#include "Commands.h"
#include "audiounits/devices/AudioDevices.h"

namespace {

constexpr CommandText kText{"ombrix devices [--json]",
                            "Lists the audio devices that --device of ombrix play takes."};

QJsonObject asJson(const AudioDeviceInfo& device) {
    return {{"name", QString::fromStdString(device.name)},
            {"backEnd", QString::fromStdString(device.name.substr(0, device.name.find(':')))},
            {"description", QString::fromStdString(device.description)},
            {"default", device.isDefault},
            {"rate", device.rate},
            {"periodFrames", static_cast<qint64>(device.periodFrames)},
            {"latencySeconds", device.latencySeconds},
            {"realTime", device.realTime}};
}

void printJson(const std::vector<AudioDeviceInfo>& devices) {
    QJsonArray list;
    for (const AudioDeviceInfo& device : devices)
        list.append(asJson(device));
    std::fputs(QJsonDocument(QJsonObject{{"devices", list}}).toJson().constData(), stdout);
}

void printTable(const std::vector<AudioDeviceInfo>& devices) {
    std::printf("  %-28s %8s %8s %10s  %-10s %s\n", "device", "Hz", "frames", "latency",
                "real time", "description");
    for (const AudioDeviceInfo& device : devices)
        std::printf("%c %-28s %8.0f %8u %7.1f ms  %-10s %s\n", device.isDefault ? '*' : ' ',
                    device.name.c_str(), device.rate, device.periodFrames,
                    device.latencySeconds * 1000, device.realTime ? "granted" : "no",
                    device.description.c_str());
}

}  // namespace

int devicesCommand(std::span<char*> words) {
    const CommandFrame frame(words, kText, {{"json", nullptr, "print JSON"}});
    if (frame.exitCode())
        return *frame.exitCode();
    if (!frame.arguments().words().empty())
        return frame.refuse("devices takes no " + frame.arguments().words()[0]);
    const auto devices = AudioDevices::list();
    if (frame.arguments().has("json"))
        printJson(devices);
    else
        printTable(devices);
    return kExitDone;
}
