#include "screens/PerformanceCompleteController.h"

void PerformanceCompleteController::choose(int row) {
    if (row == 0)
        m_delegate.sendingToAudioCopy(m_localPath);
    else if (row == 1)
        m_delegate.sendingToOtherApp(m_localPath);
    else
        m_delegate.sendingToDropbox(m_localPath);
}
