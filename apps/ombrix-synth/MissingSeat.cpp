#include "MissingSeat.h"

#include <unistd.h>

#include <QGuiApplication>
#include <QInputDevice>

void beginAnewWithoutSeat(char** argv) {
    const bool wayland = QGuiApplication::platformName().startsWith("wayland");
    if (!wayland || !QInputDevice::devices().isEmpty() || qEnvironmentVariableIsSet("QT_IM_MODULE"))
        return;
    qputenv("QT_IM_MODULE", "compose");
    execv("/proc/self/exe", argv);
}
