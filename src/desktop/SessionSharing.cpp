#include "SessionSharing.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <QUrl>

#include "OpenInMenu.h"
#include "RecordingMimeData.h"
#include "SoundFormats.h"

namespace {

QStringList localFiles(const QList<QUrl>& urls) {
    QStringList paths;
    for (const QUrl& url : urls) {
        if (url.isLocalFile())
            paths.append(url.toLocalFile());
    }
    return paths;
}

QList<QUrl> copiedFiles(const QMimeData& data) {
    QList<QUrl> urls;
    for (const QByteArray& line : data.data(SoundFormats::kCopiedFiles).split('\n'))
        urls.append(QUrl::fromEncoded(line));
    return urls;
}

QByteArray sound(const QMimeData& data) {
    for (const char* format : SoundFormats::kWav) {
        if (data.hasFormat(format))
            return data.data(format);
    }
    return {};
}

}  // namespace

void SessionSharing::copy(const QString& path) {
    QGuiApplication::clipboard()->setMimeData(new RecordingMimeData(path));
}

DesktopSharing::Clipboard SessionSharing::taken(const QMimeData& data) {
    QStringList files = localFiles(data.urls());
    if (files.isEmpty())
        files = localFiles(copiedFiles(data));
    return {files, files.isEmpty() ? sound(data) : QByteArray()};
}

DesktopSharing::Clipboard SessionSharing::clipboard() const {
    const QMimeData* const data = QGuiApplication::clipboard()->mimeData();
    return data ? taken(*data) : Clipboard();
}

void SessionSharing::openIn(const QString& path, Failed failed) {
    OpenInMenu::present(path, std::move(failed));
}
