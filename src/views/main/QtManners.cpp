#include "main/QtManners.h"

#include <QByteArray>

namespace {

void settle(const char* name, const char* value) {
    if (!qEnvironmentVariableIsSet(name))
        qputenv(name, value);
}

}  // namespace

void QtManners::settle() {
    ::settle("QML_NO_TOUCH_COMPRESSION", "1");  // a glissando plays every key at once
    // Milliseconds from a change to the frame that shows it. Five, as Qt has it, come on top of the
    // eight between two reports of a touch screen, and frames are then often late.
    ::settle("QT_QPA_UPDATE_IDLE_TIME", "2");
}
