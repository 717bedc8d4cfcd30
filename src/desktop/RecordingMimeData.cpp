#include "RecordingMimeData.h"

#include <QFile>
#include <QUrl>

#include "SoundFormats.h"

RecordingMimeData::RecordingMimeData(const QString& path) : m_path(path) {
    const QUrl url = QUrl::fromLocalFile(path);
    setUrls({url});
    setData(SoundFormats::kCopiedFiles, "copy\n" + url.toEncoded());
}

QStringList RecordingMimeData::formats() const {
    QStringList all = QMimeData::formats();
    for (const char* format : SoundFormats::kWav)
        all.append(QString::fromLatin1(format));
    return all;
}

QVariant RecordingMimeData::retrieveData(const QString& format, QMetaType type) const {
    return SoundFormats::isWav(format) ? sound() : QMimeData::retrieveData(format, type);
}

QByteArray RecordingMimeData::sound() const {
    QFile file(m_path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}
