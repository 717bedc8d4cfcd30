#pragma once

#include <QObject>
#include <QString>
#include <functional>
#include <memory>

#include "runloop/RunLoop.h"
#include "wavechoice/WaveLoading.h"

/// The sound in use, as the wave view shows it, and one that is on its way. A load that takes no
/// time to speak of is not shown. [main]
class WaveState : public QObject, private WaveLoadingDelegate {
    Q_OBJECT
    Q_PROPERTY(QString name READ name NOTIFY waveChanged)
    Q_PROPERTY(bool loading READ loading NOTIFY loadingChanged)
    Q_PROPERTY(float progress READ progress NOTIFY progressChanged)
    Q_PROPERTY(QString loadingName READ loadingName NOTIFY loadingChanged)

  public:
    /// Hears one line for the user at a time.
    using Tell = std::function<void(const std::string& line)>;

    WaveState(WaveChoice& waves, WaveLoading& sounds, Tell tell);
    ~WaveState() override;

    /// File name without extension; empty for a take without a name.
    QString name() const;
    /// As it was edited last; null before any was chosen. While a take is recorded, this is the
    /// sound of before.
    const std::shared_ptr<VornWaveSequence>& wave() const { return m_waves.shownWave(); }

    bool loading() const { return m_loading; }
    /// 0 to 1.
    float progress() const { return m_progress; }
    QString loadingName() const { return m_loadingName; }
    /// Forgets the sound that is on its way.
    Q_INVOKABLE void cancel() { m_sounds.cancel(); }

    void update() { Q_EMIT waveChanged(); }
    void updateEdited() { Q_EMIT waveEdited(); }

  Q_SIGNALS:
    /// Another sound is in use: show all of it.
    void waveChanged();
    /// The sound in use was edited: show the same stretch of it, as far as there is one.
    void waveEdited();
    void loadingChanged();
    void progressChanged();

  private:
    void waveArrived() override { update(); }
    void loadingBeganOrEnded() override;
    void show(bool loading);
    void loadingTold(const std::string& line) override { m_tell(line); }
    void look();

    WaveChoice& m_waves;
    WaveLoading& m_sounds;
    Tell m_tell;
    bool m_loading = false;
    float m_progress = 0;
    QString m_loadingName;
    RunLoop::Token m_looking = 0;  // 0: nothing is on its way
};
