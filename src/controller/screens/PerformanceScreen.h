#pragma once

#include <QObject>
#include <QString>
#include <functional>
#include <optional>

#include "recording/Performance.h"

/// The recording of a performance on the screen: the record button, what it says, and how long the
/// disk will do. [main]
class PerformanceScreen : public QObject, private PerformanceDelegate {
    Q_OBJECT
    Q_PROPERTY(QString buttonTitle READ buttonTitle NOTIFY changed)
    Q_PROPERTY(int state READ state NOTIFY changed)
    Q_PROPERTY(bool recording READ recording NOTIFY changed)
    Q_PROPERTY(QString remaining READ remaining NOTIFY remainingChanged)
    Q_PROPERTY(bool diskNearlyFull READ diskNearlyFull NOTIFY remainingChanged)

  public:
    /// Bytes that can still be written; none when nobody knows.
    using FreeBytes = std::function<std::optional<std::uint64_t>()>;
    static constexpr double kDiskSeconds = 5;  // between two looks at the disk
    static constexpr int kFewSeconds = 60;     // below these the disk is nearly full

    /// Without `freeBytes` those of the data folder count.
    explicit PerformanceScreen(Performance& performance, FreeBytes freeBytes = {});
    ~PerformanceScreen() override;

    /// "Record", "Waiting..." or the time.
    QString buttonTitle() const { return m_title; }
    /// A Performance::State.
    int state() const { return static_cast<int>(m_performance.recordingPerformance()); }
    bool recording() const {
        return m_performance.recordingPerformance() == Performance::State::recording;
    }
    /// How long the disk will do, in words; empty when nothing is recorded or awaited.
    QString remaining() const { return m_remaining; }
    bool diskNearlyFull() const { return m_nearlyFull; }

    Q_INVOKABLE void toolbarRecordClicked();

  Q_SIGNALS:
    void changed();
    void remainingChanged();
    /// To be spoken for assistive technology.
    void announced(const QString& text);
    void complete(const QString& path);
    void problem(const QString& line);

  private:
    void buttonTitleChanged(const std::string& title) override;
    void accessibleAnnounce(const std::string& text) override;
    void performanceComplete(const std::string& path) override;
    void performanceProblem(const std::string& line) override;

    void watchDisk();
    void lookAtDisk();
    void setRemaining(const QString& text, bool nearlyFull);

    Performance& m_performance;
    FreeBytes m_freeBytes;
    QString m_title = tr("Record");
    QString m_remaining;
    bool m_nearlyFull = false;
    RunLoop::Token m_diskLooks = 0;  // 0: none
};
