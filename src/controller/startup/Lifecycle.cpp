#include "startup/Lifecycle.h"

void Lifecycle::willForeground(bool) {
    m_marker.markRunning(true);
}

void Lifecycle::willBackground(bool leaving) {
    if (leaving)
        m_settings.keepForNextRun();
    m_marker.markRunning(false);
}

void Lifecycle::willTerminate() {
    willBackground(true);
    m_instrument.stop();
    Vornery::sharedInstance().uninitialise();
}
