#pragma once

#include <QObject>
#include <QString>
#include <QStringList>

class PerformanceCompleteController;

/// Where a recording can be sent.
class PerformanceCompleteDelegate {
  public:
    virtual ~PerformanceCompleteDelegate() = default;
    virtual void sendingToAudioCopy(PerformanceCompleteController& controller,
                                    const QString& path) = 0;
    virtual void sendingToOtherApp(PerformanceCompleteController& controller,
                                   const QString& path) = 0;
    virtual void sendingToDropbox(PerformanceCompleteController& controller,
                                  const QString& path) = 0;
};

/// The screen after a performance was recorded. [main]
class PerformanceCompleteController : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString localPath READ localPath CONSTANT)
    Q_PROPERTY(QString title READ title CONSTANT)
    Q_PROPERTY(QString header READ header CONSTANT)
    Q_PROPERTY(QStringList rows READ rows CONSTANT)
    Q_PROPERTY(QString footer READ footer CONSTANT)
    Q_PROPERTY(int width READ width CONSTANT)

  public:
    PerformanceCompleteController(QString localPath, PerformanceCompleteDelegate& delegate)
        : m_localPath(std::move(localPath)), m_delegate(delegate) {}

    const QString& localPath() const { return m_localPath; }
    QString title() const { return tr("Performance Recorded"); }
    QString header() const { return tr("Send recording:"); }
    QStringList rows() const { return {tr("AudioCopy"), tr("Open in..."), tr("Dropbox")}; }
    /// Names the kind of machine: computer, tablet or phone.
    QString footer() const;
    /// Of the popover, in points.
    int width() const { return 320; }

    /// A row, 0 to 2; others are ignored.
    Q_INVOKABLE void choose(int row);

  private:
    QString m_localPath;
    PerformanceCompleteDelegate& m_delegate;
};
