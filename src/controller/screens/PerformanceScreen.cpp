#include "screens/PerformanceScreen.h"

#include "screens/RemainingTime.h"
#include "storage/DiskSpace.h"
#include "wavechoice/WaveChoice.h"

PerformanceScreen::PerformanceScreen(Performance& performance, FreeBytes freeBytes)
    : m_performance(performance), m_freeBytes(std::move(freeBytes)) {
    if (!m_freeBytes)
        m_freeBytes = [] { return DiskSpace::freeBytes(WaveChoice::dataFile("")); };
    m_performance.setDelegate(this);
}

PerformanceScreen::~PerformanceScreen() {
    RunLoop::main().cancel(m_diskLooks);
    m_performance.setDelegate(nullptr);
}

void PerformanceScreen::toolbarRecordClicked() {
    m_performance.toolbarRecordClicked();
    watchDisk();
    Q_EMIT changed();
}

// The title changes with every change of the state, except that the second after a recording goes
// by in silence.
void PerformanceScreen::buttonTitleChanged(const std::string& title) {
    m_title = tr(title.c_str());
    watchDisk();
    Q_EMIT changed();
}

void PerformanceScreen::watchDisk() {
    const auto state = m_performance.recordingPerformance();
    const bool needed =
        state == Performance::State::waiting || state == Performance::State::recording;
    if (needed == (m_diskLooks != 0))
        return;
    RunLoop::main().cancel(m_diskLooks);
    m_diskLooks = 0;
    if (!needed)
        return setRemaining({}, false);
    m_diskLooks = RunLoop::main().callEvery(kDiskSeconds, [this] { lookAtDisk(); });
    lookAtDisk();
}

void PerformanceScreen::lookAtDisk() {
    const auto bytes = m_freeBytes();
    if (!bytes)
        return setRemaining({}, false);
    const qint64 seconds = RemainingTime::seconds(*bytes);
    const bool nearlyFull = seconds < kFewSeconds;
    if (nearlyFull && !m_nearlyFull)
        Q_EMIT problem(tr("The disk is nearly full: only %1 more s can be recorded. Delete files "
                          "you do not need to record longer.")
                           .arg(seconds));
    setRemaining(RemainingTime::text(seconds), nearlyFull);
}

void PerformanceScreen::setRemaining(const QString& text, bool nearlyFull) {
    m_remaining = text;
    m_nearlyFull = nearlyFull;
    Q_EMIT remainingChanged();
}

void PerformanceScreen::accessibleAnnounce(const std::string& text) {
    Q_EMIT announced(tr(text.c_str()));
}

void PerformanceScreen::performanceComplete(const std::string& path) {
    Q_EMIT complete(QString::fromStdString(path));
}

void PerformanceScreen::performanceProblem(const std::string& line) {
    Q_EMIT problem(QString::fromStdString(line));
}
