#pragma once

#include <QMimeData>

/// A sound file as the clipboard offers it: as a file, and as the sound itself. The sound is read
/// from the file each time that somebody asks for it, and never kept. [main]
class RecordingMimeData : public QMimeData {
    Q_OBJECT

  public:
    explicit RecordingMimeData(const QString& path);

    QStringList formats() const override;
    bool hasFormat(const QString& format) const override { return formats().contains(format); }

  protected:
    QVariant retrieveData(const QString& format, QMetaType type) const override;

  private:
    QByteArray sound() const;

    QString m_path;
};
