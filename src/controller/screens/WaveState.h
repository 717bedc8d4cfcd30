#pragma once

#include <QObject>
#include <QString>
#include <memory>

#include "wavechoice/WaveChoice.h"

/// The sound in use, as the wave view shows it, and one that is on its way: sounds are loaded in
/// the background; name, view and voices change when a load has succeeded; of overlapping choices
/// the last wins, and one that fails changes nothing. [main]
class WaveState : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString name READ name NOTIFY waveChanged)
    Q_PROPERTY(bool loading READ loading NOTIFY loadingChanged)
    Q_PROPERTY(float progress READ progress NOTIFY progressChanged)
    Q_PROPERTY(QString loadingName READ loadingName NOTIFY loadingChanged)

  public:
    explicit WaveState(WaveChoice& waves) : m_waves(waves) {}

    /// File name without extension; empty for a take without a name.
    QString name() const;
    /// Null before any was chosen. While a take is recorded, this is the sound of before.
    const std::shared_ptr<VornWaveSequence>& wave() const { return m_waves.currentWave(); }

    bool loading() const { return m_loading; }
    /// 0 to 1.
    float progress() const { return m_progress; }
    QString loadingName() const { return m_loadingName; }
    /// Forgets the sound that is on its way.
    Q_INVOKABLE void cancel();

    void update() { Q_EMIT waveChanged(); }

  Q_SIGNALS:
    /// Another sound is in use: show all of it.
    void waveChanged();
    void loadingChanged();
    void progressChanged();

  private:
    WaveChoice& m_waves;
    bool m_loading = false;
    float m_progress = 0;
    QString m_loadingName;
};
