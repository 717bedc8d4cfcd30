#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <functional>

/// What the desktop does with files and sounds: its clipboard, and its other programs. [main]
class DesktopSharing {
  public:
    virtual ~DesktopSharing() = default;

    /// What lies on the clipboard, as far as it can become a sound.
    struct Clipboard {
        QStringList files;  // full paths
        QByteArray sound;   // a WAV file; only looked for when there are no files
    };
    /// Hears one line when it did not work.
    using Failed = std::function<void(const QString& line)>;

    /// Puts a sound file on the clipboard, as file and as sound. The sound is read only when
    /// somebody pastes it.
    virtual void copy(const QString& path) = 0;
    virtual Clipboard clipboard() const = 0;
    /// Lets the user choose a program that opens the file. Returns at once.
    virtual void openIn(const QString& path, Failed failed) = 0;
};
