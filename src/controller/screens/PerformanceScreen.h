#pragma once

#include <QObject>
#include <QString>

#include "recording/Performance.h"

/// The recording of a performance on the screen: the record button, and what it says. [main]
class PerformanceScreen : public QObject, private PerformanceDelegate {
    Q_OBJECT
    Q_PROPERTY(QString buttonTitle READ buttonTitle NOTIFY changed)
    Q_PROPERTY(int state READ state NOTIFY changed)
    Q_PROPERTY(QString remaining READ remaining NOTIFY remainingChanged)

  public:
    explicit PerformanceScreen(Performance& performance);
    ~PerformanceScreen() override;

    /// "Record", "Waiting..." or the time.
    QString buttonTitle() const { return m_title; }
    /// A Performance::State.
    int state() const { return static_cast<int>(m_performance.recordingPerformance()); }
    /// How long the disk will do, in words; empty when nothing is recorded.
    QString remaining() const { return m_remaining; }

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

    Performance& m_performance;
    QString m_title = tr("Record");
    QString m_remaining;
};
