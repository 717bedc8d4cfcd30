#include "QtMessages.h"

#include <unistd.h>

#include <QString>
#include <QtGlobal>

#include "log/Log.h"

namespace {

bool hasDisplay = false;
bool haveChosen = false;  // the variable that tells Qt where to look is ours

void hear(QtMsgType type, const QMessageLogContext&, const QString& text) {
    Log::line("Qt: %s", qPrintable(text));
    if (type != QtFatalMsg)
        return;
    if (hasDisplay) {
        tellUser("stopped: %s", qPrintable(text));
        return;  // to be aborted
    }
    tellUser(
        "no display can be opened; the instrument needs one (X11 or Wayland). Without one, "
        "ombrix render and ombrix play do their work");
    ::_exit(1);
}

/// The session's own server first; the other one where that does not answer.
void tryEveryServer() {
    if (!qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        return;
    haveChosen = true;
    const bool wayland = qEnvironmentVariableIsEmpty("DISPLAY") ||
                         qgetenv("XDG_SESSION_TYPE").toLower() == "wayland";
    qputenv("QT_QPA_PLATFORM", wayland ? "wayland;xcb" : "xcb;wayland");
}

}  // namespace

void QtMessages::listen() {
    qInstallMessageHandler(hear);
    tryEveryServer();
}

void QtMessages::started() {
    hasDisplay = true;
    if (haveChosen)
        qunsetenv("QT_QPA_PLATFORM");  // not for programs that this one starts
}
