#pragma once

#include <QList>
#include <QObject>
#include <QStringList>
#include <QUrl>
#include <memory>
#include <thread>
#include <vector>

#include "screens/DesktopSharing.h"
#include "screens/PerformanceCompleteController.h"
#include "screens/Presentation.h"

/// What goes out and comes in: recordings to the clipboard, to other programs and to Dropbox, and
/// sounds that are pasted or dropped. [main]
class Sharing : public QObject {
    Q_OBJECT

  public:
    /// `delegate` hears what the player chooses on the completion screen.
    Sharing(Presentation& presentation, PerformanceCompleteDelegate& delegate);
    ~Sharing() override;

    /// Not retained; null while there is no desktop.
    void setDesktop(DesktopSharing* desktop) { m_desktop = desktop; }

    /// Shows the completion screen for a recording.
    void performanceComplete(const QString& path);
    /// The same for the last recording, if there is one and it still exists; else one line says
    /// what to do.
    void shareLast(const QString& path);

    // The rows of the completion screen. Each closes it.
    void sendToAudioCopy(const QString& path);
    void sendToOtherApp(const QString& path);
    /// In the background; one line tells when the copy is there, or why not.
    void sendToDropbox(const QString& path);

    /// What lies on the clipboard becomes the sound.
    Q_INVOKABLE void paste();
    /// Files were dropped on the window.
    Q_INVOKABLE void drop(const QList<QUrl>& urls);

  Q_SIGNALS:
    /// One line for the user.
    void told(const QString& line);
    /// Files to be opened.
    void arrived(const QStringList& paths);

  private:
    void copyInBackground(const std::string& folder, const std::string& path);
    void copied(const std::string& copy, const std::string& error, std::thread::id thread);
    bool isThere(const QString& path);

    Presentation& m_presentation;
    PerformanceCompleteDelegate& m_delegate;
    DesktopSharing* m_desktop = nullptr;
    std::unique_ptr<PerformanceCompleteController> m_complete;
    std::shared_ptr<Sharing*> m_self =
        std::make_shared<Sharing*>(this);  // copies look for us there
    std::vector<std::jthread> m_copies;
};
