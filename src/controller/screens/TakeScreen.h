#pragma once

#include <QObject>
#include <QString>

#include "recording/AudioTake.h"
#include "recording/TakeOutline.h"

/// A take of the microphone on the screen: the bubble at the button, the input meter, the outline
/// that grows. Looks at what was heard 30 times a second. [main]
class TakeScreen : public QObject, private AudioTakeDelegate {
    Q_OBJECT
    Q_PROPERTY(bool recording READ recording NOTIFY recordingChanged)
    Q_PROPERTY(QString bubble READ bubble NOTIFY bubbleChanged)
    Q_PROPERTY(float level READ level NOTIFY levelChanged)
    Q_PROPERTY(float seconds READ seconds NOTIFY levelChanged)
    Q_PROPERTY(float longest READ longest CONSTANT)
    Q_PROPERTY(QString remaining READ remaining NOTIFY remainingChanged)

  public:
    static constexpr double kLooksPerSecond = 30;
    /// Seconds after which a microphone that gives nothing is told of.
    static constexpr double kPatience = 2;

    explicit TakeScreen(AudioTake& take);
    ~TakeScreen() override;

    bool recording() const { return m_take.recording(); }
    /// Text of the bubble; empty when none is shown.
    QString bubble() const { return m_bubble; }
    /// Peak of the input in the last moments, 0 to 1 of full scale; falls by 45 dB per second.
    float level() const { return m_level; }
    /// Length so far.
    float seconds() const;
    /// Seconds that a take lasts at most.
    float longest() const { return AudioTake::kLongestTake; }
    /// How much longer the take can last, in words; empty when none runs.
    QString remaining() const { return m_remaining; }
    /// Grows while a take runs, and is empty otherwise.
    const TakeOutline& outline() const { return m_outline; }

    /// The microphone button. Without any audio device nothing begins but a line that says so.
    Q_INVOKABLE void waveRecordDown();
    /// Nothing happens when no take runs.
    Q_INVOKABLE void waveRecordUp();

  Q_SIGNALS:
    void recordingChanged();
    void bubbleChanged();
    /// The meter, the length or the outline.
    void levelChanged();
    void remainingChanged();
    /// The take is the sound in use.
    void taken();
    void alert(const QString& title, const QString& message, const QString& button);
    void problem(const QString& line);

  private:
    void bubbleShown(const std::string& text) override;
    void bubbleDismissed() override;
    void alertShown(const std::string& title, const std::string& message,
                    const std::string& button) override;
    void takeMade(const std::shared_ptr<VornWaveSequence>& take) override;
    void takeProblem(const std::string& line) override;

    void begin();
    void look();
    void end();
    void setRemaining(const QString& text);
    void tellOnce(const QString& line);

    AudioTake& m_take;
    TakeOutline m_outline;
    QString m_bubble;
    QString m_remaining;
    float m_level = 0;
    bool m_silent = true;        // nothing but zeros so far
    bool m_told = false;         // of that
    double m_since = 0;          // on Clock::monotonic
    RunLoop::Token m_looks = 0;  // 0: none
};
