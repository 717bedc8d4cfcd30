#include "screens/WaveState.h"

QString WaveState::name() const {
    const auto& filename = m_waves.currentWaveFilename();
    if (!filename)
        return {};
    return QString::fromStdString(filename->substr(0, filename->rfind('.')));
}

void WaveState::cancel() {
    m_loading = false;
    Q_EMIT loadingChanged();
}
