#include "screens/WaveState.h"

namespace {

constexpr double kProgressSeconds = 1.0 / 15;  // also how long a load goes without being shown

QString withoutExtension(const std::string& filename) {
    return QString::fromStdString(filename.substr(0, filename.rfind('.')));
}

}  // namespace

WaveState::WaveState(WaveChoice& waves, WaveLoading& sounds, Tell tell)
    : m_waves(waves), m_sounds(sounds), m_tell(std::move(tell)) {
    m_sounds.setDelegate(this);
}

WaveState::~WaveState() {
    m_sounds.setDelegate(nullptr);
    RunLoop::main().cancel(m_looking);
}

QString WaveState::name() const {
    const auto& filename = m_waves.currentWaveFilename();
    return filename ? withoutExtension(*filename) : QString();
}

void WaveState::update() {
    Q_EMIT waveChanged();
    Q_EMIT nameChanged();
}

void WaveState::updateEdited() {
    Q_EMIT waveEdited();
    Q_EMIT nameChanged();
}

void WaveState::loadingBeganOrEnded() {
    if (m_sounds.loading()) {
        if (!m_looking)
            m_looking = RunLoop::main().callEvery(kProgressSeconds, [this] { look(); });
        return;
    }
    RunLoop::main().cancel(m_looking);
    m_looking = 0;
    show(false);
}

void WaveState::look() {
    show(true);
    const float progress = m_sounds.progress();
    if (progress == m_progress)
        return;
    m_progress = progress;
    Q_EMIT progressChanged();
}

void WaveState::show(bool loading) {
    const QString name = loading ? withoutExtension(m_sounds.filename()) : QString();
    if (loading == m_loading && name == m_loadingName)
        return;
    m_loading = loading;
    m_loadingName = name;
    m_progress = 0;
    Q_EMIT loadingChanged();
    Q_EMIT progressChanged();
}
