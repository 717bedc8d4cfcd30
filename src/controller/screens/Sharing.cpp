#include "screens/Sharing.h"

#include <QDir>
#include <QFileInfo>

#include "runloop/RunLoop.h"
#include "screens/DropboxFolder.h"
#include "screens/PastedSound.h"
#include "storage/FileCopy.h"

Sharing::Sharing(Presentation& presentation, PerformanceCompleteDelegate& delegate)
    : m_presentation(presentation), m_delegate(delegate) {}

// Copies that are under way end without a trace.
Sharing::~Sharing() = default;

// A screen of that tag that is shown stays in that place with the new recording.
void Sharing::performanceComplete(const QString& path) {
    m_presentation.canPresent(Presentation::kRecorded);
    auto complete = std::make_unique<PerformanceCompleteController>(path, m_delegate);
    m_presentation.present(Presentation::kRecorded, complete.get());
    m_complete.swap(complete);
}

bool Sharing::isThere(const QString& path) {
    if (!path.isEmpty() && QFileInfo(path).isFile())
        return true;
    Q_EMIT told(path.isEmpty() ? tr("There is no recording to send yet: press Record and play.")
                               : tr("%1: the recording is not there any more.").arg(path));
    return false;
}

void Sharing::shareLast(const QString& path) {
    if (isThere(path))
        performanceComplete(path);
}

void Sharing::sendToAudioCopy(const QString& path) {
    m_presentation.finish();
    if (!m_desktop || !isThere(path))
        return;
    m_desktop->copy(path);
    Q_EMIT told(tr("The recording is on the clipboard: paste it into another program."));
}

void Sharing::sendToOtherApp(const QString& path) {
    m_presentation.finish();
    if (m_desktop && isThere(path))
        m_desktop->openIn(path, [this](const QString& line) { Q_EMIT told(line); });
}

void Sharing::sendToDropbox(const QString& path) {
    m_presentation.finish();
    if (!isThere(path))
        return;
    std::string error;
    const std::string folder = DropboxFolder::find(QDir::homePath().toStdString(), error);
    if (folder.empty())
        Q_EMIT told(QString::fromStdString(error));
    else
        copyInBackground(folder, path.toStdString());
}

void Sharing::copyInBackground(const std::string& folder, const std::string& path) {
    const std::weak_ptr<Sharing*> self = m_self;
    m_copies.emplace_back([self, folder, path](const std::stop_token& stop) {
        std::string error;
        const std::string copy = FileCopy::into(folder, path, stop, error);
        RunLoop::main().callAfter(0, [self, copy, error, thread = std::this_thread::get_id()] {
            if (const auto there = self.lock())
                (*there)->copied(copy, error, thread);
        });
    });
}

void Sharing::copied(const std::string& copy, const std::string& error, std::thread::id thread) {
    std::erase_if(m_copies, [&](const std::jthread& made) { return made.get_id() == thread; });
    if (copy.empty())
        Q_EMIT told(QString::fromStdString(error));
    else
        Q_EMIT told(tr("The recording is in Dropbox: %1").arg(QString::fromStdString(copy)));
}

void Sharing::paste() {
    if (!m_desktop)
        return;
    const DesktopSharing::Clipboard clipboard = m_desktop->clipboard();
    if (!clipboard.files.isEmpty()) {
        Q_EMIT arrived(clipboard.files);
        return;
    }
    if (clipboard.sound.isEmpty()) {
        Q_EMIT told(tr("There is no sound on the clipboard: copy a sound file, then paste again."));
        return;
    }
    std::string error;
    const std::string path = PastedSound::keep(clipboard.sound, error);
    if (path.empty())
        Q_EMIT told(tr("What was pasted cannot be played: %1").arg(QString::fromStdString(error)));
    else
        Q_EMIT arrived({QString::fromStdString(path)});
}

void Sharing::drop(const QList<QUrl>& urls) {
    QStringList paths;
    for (const QUrl& url : urls) {
        if (url.isLocalFile())
            paths.append(url.toLocalFile());
    }
    if (paths.isEmpty())
        Q_EMIT told(tr("Only files of this device can be dropped here."));
    else
        Q_EMIT arrived(paths);
}
