#pragma once

#include <QObject>
#include <QString>

/// Where a recording can be sent.
class PerformanceCompleteDelegate {
  public:
    virtual ~PerformanceCompleteDelegate() = default;
    virtual void sendingToAudioCopy(const QString& path) = 0;
    virtual void sendingToOtherApp(const QString& path) = 0;
    virtual void sendingToDropbox(const QString& path) = 0;
};

/// The screen after a performance was recorded. [main]
class PerformanceCompleteController : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString localPath READ localPath CONSTANT)

  public:
    PerformanceCompleteController(QString localPath, PerformanceCompleteDelegate& delegate)
        : m_localPath(std::move(localPath)), m_delegate(delegate) {}

    const QString& localPath() const { return m_localPath; }
    /// 0 "AudioCopy", 1 "Open in...", 2 "Dropbox".
    Q_INVOKABLE void choose(int row);

  private:
    QString m_localPath;
    PerformanceCompleteDelegate& m_delegate;
};
