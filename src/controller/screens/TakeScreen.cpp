#include "screens/TakeScreen.h"

#include <algorithm>
#include <utility>

#include "audiounits/devices/AudioDevices.h"
#include "recording/MinutesAndSeconds.h"
#include "runloop/Clock.h"

namespace {

constexpr float kFall = 0.84f;  // of the meter between two looks

/// The clock plays where no device is, and hears nothing.
bool noDevice() {
    return AudioDevices::current()->info().name == "clock";
}

QString silence() {
    return TakeScreen::tr(
        "Nothing but silence was heard: see whether the microphone is connected "
        "and switched on.");
}

}  // namespace

TakeScreen::TakeScreen(AudioTake& take) : m_take(take) {
    m_take.setDelegate(this);
}

TakeScreen::~TakeScreen() {
    RunLoop::main().cancel(m_looks);
    m_take.setDelegate(nullptr);
}

float TakeScreen::seconds() const {
    return static_cast<float>(m_take.framesHeard()) / static_cast<float>(kGraphRate);
}

void TakeScreen::waveRecordDown() {
    if (recording())
        return;
    if (noDevice()) {
        Q_EMIT problem(
            tr("There is no microphone: connect an audio device, then hold the button "
               "again."));
        return;
    }
    m_take.waveRecordDown();
    begin();
}

void TakeScreen::begin() {
    m_since = Clock::monotonic();
    m_silent = true;
    m_told = false;
    m_looks = RunLoop::main().callEvery(1 / kLooksPerSecond, [this] { look(); });
    look();
    Q_EMIT recordingChanged();
}

void TakeScreen::waveRecordUp() {
    if (recording())
        m_take.waveRecordUp();
}

void TakeScreen::look() {
    const float peak = m_outline.grow(m_take.heard());
    m_level = std::max(peak, m_level * kFall);
    m_silent = m_silent && peak == 0;
    const int left = AudioTake::kLongestTake - MinutesAndSeconds::since(m_since);
    setRemaining(tr("%1 s left").arg(std::max(0, left)));
    if (m_silent && Clock::monotonic() - m_since >= kPatience)
        tellOnce(m_take.framesHeard() == 0
                     ? tr("No microphone answers: connect one, allow this program to use it, or "
                          "choose another input in the settings.")
                     : silence());
    Q_EMIT levelChanged();
}

void TakeScreen::tellOnce(const QString& line) {
    if (std::exchange(m_told, true))
        return;
    Q_EMIT problem(line);
}

void TakeScreen::setRemaining(const QString& text) {
    if (text == m_remaining)
        return;
    m_remaining = text;
    Q_EMIT remainingChanged();
}

/// The take has ended, by whatever way, and its frames are about to go.
void TakeScreen::end() {
    RunLoop::main().cancel(m_looks);
    m_looks = 0;
    m_level = 0;
    m_outline.clear();
    setRemaining({});
    Q_EMIT levelChanged();
    Q_EMIT recordingChanged();
}

void TakeScreen::bubbleShown(const std::string& text) {
    m_bubble = QString::fromStdString(text);
    Q_EMIT bubbleChanged();
}

// A take begins and ends with this.
void TakeScreen::bubbleDismissed() {
    m_bubble.clear();
    Q_EMIT bubbleChanged();
    if (m_looks != 0)
        end();
}

void TakeScreen::alertShown(const std::string& title, const std::string& message,
                            const std::string& button) {
    Q_EMIT alert(tr(title.c_str()), tr(message.c_str()), tr(button.c_str()));
}

void TakeScreen::takeMade(const std::shared_ptr<VornWaveSequence>&) {
    if (m_take.lastPeak() == 0)
        tellOnce(silence());
    Q_EMIT taken();
}

void TakeScreen::takeProblem(const std::string& line) {
    Q_EMIT problem(QString::fromStdString(line));
}
