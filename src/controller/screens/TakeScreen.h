#pragma once

#include <QObject>
#include <QString>

#include "recording/AudioTake.h"

/// A take of the microphone on the screen: the bubble at the button, the input meter, the outline
/// that grows. [main]
class TakeScreen : public QObject, private AudioTakeDelegate {
    Q_OBJECT
    Q_PROPERTY(bool recording READ recording NOTIFY recordingChanged)
    Q_PROPERTY(QString bubble READ bubble NOTIFY bubbleChanged)
    Q_PROPERTY(float level READ level NOTIFY levelChanged)
    Q_PROPERTY(float seconds READ seconds NOTIFY levelChanged)

  public:
    explicit TakeScreen(AudioTake& take);
    ~TakeScreen() override;

    bool recording() const { return m_take.recording(); }
    /// Text of the bubble; empty when none is shown.
    QString bubble() const { return m_bubble; }
    /// Peak of the input just now, 0 to 1 of full scale.
    float level() const { return m_level; }
    /// Length so far.
    float seconds() const;

    /// The microphone button.
    Q_INVOKABLE void waveRecordDown();
    Q_INVOKABLE void waveRecordUp();

  Q_SIGNALS:
    void recordingChanged();
    void bubbleChanged();
    void levelChanged();
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

    AudioTake& m_take;
    QString m_bubble;
    float m_level = 0;
};
