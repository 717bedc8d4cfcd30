#include "screens/TakeScreen.h"

TakeScreen::TakeScreen(AudioTake& take) : m_take(take) {
    m_take.setDelegate(this);
}

TakeScreen::~TakeScreen() {
    m_take.setDelegate(nullptr);
}

float TakeScreen::seconds() const {
    return static_cast<float>(m_take.framesHeard()) / 44100.f;
}

void TakeScreen::waveRecordDown() {
    m_take.waveRecordDown();
    Q_EMIT recordingChanged();
}

void TakeScreen::waveRecordUp() {
    m_take.waveRecordUp();
    Q_EMIT recordingChanged();
}

void TakeScreen::bubbleShown(const std::string& text) {
    m_bubble = QString::fromStdString(text);
    Q_EMIT bubbleChanged();
}

void TakeScreen::bubbleDismissed() {
    m_bubble.clear();
    Q_EMIT bubbleChanged();
    Q_EMIT recordingChanged();
}

void TakeScreen::alertShown(const std::string& title, const std::string& message,
                            const std::string& button) {
    Q_EMIT alert(QString::fromStdString(title), QString::fromStdString(message),
                 QString::fromStdString(button));
}

void TakeScreen::takeMade(const std::shared_ptr<VornWaveSequence>&) {
    Q_EMIT taken();
}

void TakeScreen::takeProblem(const std::string& line) {
    Q_EMIT problem(QString::fromStdString(line));
}
