#include "screens/PerformanceScreen.h"

PerformanceScreen::PerformanceScreen(Performance& performance) : m_performance(performance) {
    m_performance.setDelegate(this);
}

PerformanceScreen::~PerformanceScreen() {
    m_performance.setDelegate(nullptr);
}

void PerformanceScreen::toolbarRecordClicked() {
    m_performance.toolbarRecordClicked();
    Q_EMIT changed();
}

void PerformanceScreen::buttonTitleChanged(const std::string& title) {
    m_title = tr(title.c_str());
    Q_EMIT changed();
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
