#include "screens/PerformanceCompleteController.h"

#include "machine/DeviceKind.h"

namespace {

QString modelName() {
    switch (deviceKind()) {
        case DeviceKind::tablet:
            return PerformanceCompleteController::tr("tablet");
        case DeviceKind::phone:
            return PerformanceCompleteController::tr("phone");
        case DeviceKind::computer:
            break;
    }
    return PerformanceCompleteController::tr("computer");
}

}  // namespace

QString PerformanceCompleteController::footer() const {
    return tr("Or tap elsewhere to continue without sending the recording anywhere. It will be "
              "kept on your %@.")
        .replace("%@", modelName());
}

void PerformanceCompleteController::choose(int row) {
    if (row == 0)
        m_delegate.sendingToAudioCopy(*this, m_localPath);
    else if (row == 1)
        m_delegate.sendingToOtherApp(*this, m_localPath);
    else if (row == 2)
        m_delegate.sendingToDropbox(*this, m_localPath);
}
