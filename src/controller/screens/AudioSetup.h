#pragma once

#include <QObject>
#include <QString>
#include <QVariantList>
#include <functional>
#include <string>

#include "defaults/UserDefaults.h"
#include "devices/AudioChoice.h"
#include "devices/AudioSurvey.h"
#include "devices/InputMeter.h"
#include "runloop/RunLoop.h"
#include "screens/AudioOption.h"

/// The audio devices as the settings screen offers them: what is played through, its buffer, what
/// is heard and how loud, and the state of it in words. A choice takes effect at once and is kept.
/// Looks at devices, and listens, only while it is shown. [main]
class AudioSetup : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString state READ state NOTIFY changed)
    Q_PROPERTY(QString health READ health NOTIFY changed)
    Q_PROPERTY(QString problem READ problem NOTIFY changed)
    Q_PROPERTY(bool looking READ looking NOTIFY changed)
    Q_PROPERTY(QVariantList devices READ devices NOTIFY offerChanged)
    Q_PROPERTY(QVariantList bufferSizes READ bufferSizes NOTIFY offerChanged)
    Q_PROPERTY(QVariantList inputs READ inputs NOTIFY offerChanged)
    Q_PROPERTY(QString bufferNote READ bufferNote NOTIFY changed)
    Q_PROPERTY(QString inputNote READ inputNote NOTIFY changed)
    Q_PROPERTY(float meter READ meter NOTIFY inputLevelChanged)

  public:
    /// Before the engine plays first: what was kept from an earlier run is used from now on. One
    /// line when it cannot be. A device that the user asks for by name is chosen after it.
    [[nodiscard]] static std::string useKept(const UserDefaults& defaults);

    explicit AudioSetup(UserDefaults& defaults) : m_defaults(defaults) {}
    ~AudioSetup() override;

    /// How everything that sounds is silenced before a device changes, and whether a take has the
    /// input.
    void setHost(std::function<void()> silence, std::function<bool()> takeRuns);

    void setShown(bool shown);

    /// In words: what plays, or that nothing answers; then priority and lost periods.
    QString state() const;
    QString health() const;
    /// Why the last choice was not followed; empty when it was.
    QString problem() const { return m_problem; }
    /// Whether devices are being looked for.
    bool looking() const { return m_survey.underWay(); }

    /// AudioOptions. Lists that are empty cannot be chosen from; the note says why.
    QVariantList devices() const { return m_offer.devices; }
    QVariantList bufferSizes() const { return m_offer.bufferSizes; }
    QVariantList inputs() const { return m_offer.inputs; }
    QString bufferNote() const;
    QString inputNote() const;

    /// 0 to 1 of full scale; falls slowly.
    float inputLevel() const { return m_level; }
    /// How far the meter is lit, 0 to 1: its lower end is 60 dB below full scale.
    float meter() const;

    /// By the name of an option. A device that does not answer is found out before the sound is
    /// interrupted.
    Q_INVOKABLE void chooseDevice(const QString& name);
    Q_INVOKABLE void chooseBufferSize(const QString& frames);
    Q_INVOKABLE void chooseInput(const QString& name);

  Q_SIGNALS:
    void changed();
    /// What can be chosen, or what of it is chosen.
    void offerChanged();
    void inputLevelChanged();
    /// One line for the user: why a choice was not followed.
    void told(const QString& line);

  private:
    void tick();
    void listen();
    void updateLevel();
    void refresh();
    void switchWanted();
    void change(const AudioChoice& wanted);
    void refuse(const QString& why);
    bool answers(const std::string& device) const;
    QVariantList deviceRows() const;
    QVariantList bufferRows() const;
    QVariantList inputRows() const;

    UserDefaults& m_defaults;
    std::function<void()> m_silence = [] {};
    std::function<bool()> m_takeRuns = [] { return false; };
    RunLoop::Token m_timer = 0;  // 0: not shown
    int m_ticks = 0;
    AudioSurvey m_survey;
    AudioSurvey::Found m_found;
    AudioDeviceInfo m_playing;
    struct Offer {
        QVariantList devices, bufferSizes, inputs;
        bool operator==(const Offer&) const = default;
    } m_offer;
    QString m_wantedDevice;  // chosen, and now looked for
    bool m_deviceWanted = false;
    QString m_problem;
    InputMeter m_meter;
    float m_level = 0;
};
