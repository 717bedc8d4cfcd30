#include <gtest/gtest.h>

#include <QClipboard>
#include <QEventLoop>
#include <QFile>
#include <QGuiApplication>
#include <QMimeData>
#include <QProcess>
#include <QUrl>

#include "ScratchFolder.h"
#include "SessionSharing.h"
#include "SoundFiles.h"

namespace {

/// What another program gets from the clipboard.
QByteArray pastedElsewhere(const QString& format) {
    QProcess xclip;
    QEventLoop loop;
    QObject::connect(&xclip, &QProcess::finished, &loop, &QEventLoop::quit);
    xclip.start("xclip", {"-selection", "clipboard", "-o", "-t", format});
    loop.exec();
    return xclip.readAllStandardOutput();
}

/// Another program puts a file's content on the clipboard. The claim is told a moment later; what
/// was looked at before that may still be the content of before.
void copyElsewhere(const QString& format, const std::string& path) {
    bool told = false;
    const QObject listener;
    QObject::connect(QGuiApplication::clipboard(), &QClipboard::dataChanged, &listener,
                     [&told] { told = true; });
    QProcess::execute(
        "xclip", {"-selection", "clipboard", "-i", "-t", format, QString::fromStdString(path)});
    while (!told)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

QByteArray bytes(const std::string& text) {
    return QByteArray::fromStdString(text);
}

}  // namespace

TEST(Clipboard, givesARecordingToOtherProgramsAsFileAndAsSound) {
    const ScratchFolder folder;
    const std::string path = folder.file("Recorded Live - 1.wav");
    SoundFiles::write(path, "nobody has pasted this");
    SessionSharing sharing;
    sharing.copy(QString::fromStdString(path));
    const std::string sound = SoundFiles::wav({}, std::string(3000000, '\x17'));
    SoundFiles::write(path, sound);
    for (const char* format : {"audio/x-wav", "audio/wav"})
        EXPECT_EQ(pastedElsewhere(format), bytes(sound)) << "read when it is asked for";
    const QByteArray url = QUrl::fromLocalFile(QString::fromStdString(path)).toEncoded();
    EXPECT_EQ(pastedElsewhere("text/uri-list").trimmed(), url);
    EXPECT_EQ(pastedElsewhere("x-special/gnome-copied-files"), "copy\n" + url);
    EXPECT_EQ(sharing.clipboard().files, QStringList(QString::fromStdString(path)));
}

TEST(Clipboard, takesFilesAndSoundsOfOtherPrograms) {
    const ScratchFolder folder;
    const std::string file = folder.file("pasted");
    const SessionSharing sharing;
    const std::string sound = SoundFiles::wav({}, std::string(1000000, '\x23'));
    SoundFiles::write(file, sound);
    copyElsewhere("audio/x-wav", file);
    EXPECT_TRUE(sharing.clipboard().files.isEmpty());
    EXPECT_EQ(sharing.clipboard().sound, bytes(sound));
    SoundFiles::write(file, "copy\nfile:///tmp/a%20b.wav\nhttps://example.org/c.wav");
    copyElsewhere("x-special/gnome-copied-files", file);
    EXPECT_EQ(sharing.clipboard().files, QStringList("/tmp/a b.wav"));
    SoundFiles::write(file, "words");
    copyElsewhere("text/plain", file);
    EXPECT_TRUE(sharing.clipboard().files.isEmpty());
    EXPECT_TRUE(sharing.clipboard().sound.isEmpty());
}
