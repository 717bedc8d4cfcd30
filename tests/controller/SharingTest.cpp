#include "screens/Sharing.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "Contents.h"
#include "ScratchFolder.h"
#include "SoundFiles.h"
#include "runloop/RunLoop.h"
#include "wavechoice/WaveChoice.h"

namespace fs = std::filesystem;

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class SharingTest : public testing::Test,
                    protected PerformanceCompleteDelegate,
                    protected DesktopSharing {
  protected:
    SharingTest() {
        setenv("HOME", m_folder.path().c_str(), 1);
        setenv("OMBRIX_DATA", m_folder.file("data").c_str(), 1);
        m_sharing.setDesktop(this);
        QObject::connect(&m_sharing, &Sharing::told,
                         [this](const QString& line) { m_told.push_back(line.toStdString()); });
        QObject::connect(&m_sharing, &Sharing::arrived,
                         [this](const QStringList& paths) { m_arrived = paths; });
    }
    void sendingToAudioCopy(PerformanceCompleteController&, const QString& path) override {
        m_sharing.sendToAudioCopy(path);
    }
    void sendingToOtherApp(PerformanceCompleteController&, const QString& path) override {
        m_sharing.sendToOtherApp(path);
    }
    void sendingToDropbox(PerformanceCompleteController&, const QString& path) override {
        m_sharing.sendToDropbox(path);
    }
    void copy(const QString& path) override { m_out.append("copy " + path); }
    Clipboard clipboard() const override { return m_clipboard; }
    void openIn(const QString& path, Failed) override { m_out.append("open " + path); }

    /// The player chooses a row of the completion screen that is shown.
    void choose(int row) {
        qobject_cast<PerformanceCompleteController*>(m_presentation.content())->choose(row);
        EXPECT_EQ(m_presentation.tag(), "");
    }
    /// One more line for the user.
    std::string next() {
        for (int i = 0; i < 1000 && m_told.empty(); ++i) {
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
            RunLoop::main().turn();
        }
        const std::string line = m_told.empty() ? "" : m_told.front();
        m_told.clear();
        return line;
    }
    void setUpDropbox(const std::string& accounts) {
        fs::create_directories(m_folder.path() / ".dropbox");
        std::ofstream(m_folder.file(".dropbox/info.json")) << accounts;
    }

    ScratchFolder m_folder;
    Presentation m_presentation;
    Sharing m_sharing{m_presentation, *this};
    Clipboard m_clipboard;
    QStringList m_out, m_arrived;
    std::vector<std::string> m_told;
};

}  // namespace

TEST_F(SharingTest, showsTheLastRecordingAndSendsItWhereThePlayerChooses) {
    m_sharing.shareLast("");
    EXPECT_THAT(next(), HasSubstr("no recording to send yet"));
    const auto path = QString::fromStdString(m_folder.file("Recorded Live - x.wav"));
    m_sharing.shareLast(path);
    EXPECT_THAT(next(), HasSubstr("not there any more"));
    EXPECT_EQ(m_presentation.tag(), "");
    SoundFiles::write(path.toStdString(), "sound");
    m_sharing.performanceComplete("/another");
    m_sharing.performanceComplete(path);
    EXPECT_EQ(m_presentation.tag(), "recp");
    const auto& screen = *qobject_cast<PerformanceCompleteController*>(m_presentation.content());
    EXPECT_EQ(screen.title(), "Performance Recorded");
    EXPECT_EQ(screen.rows(), QStringList({"AudioCopy", "Open in...", "Dropbox"}));
    EXPECT_THAT(screen.footer().toStdString(), testing::EndsWith("kept on your computer."));
    choose(0);
    m_sharing.performanceComplete(path);
    choose(1);
    EXPECT_EQ(m_out, QStringList({"copy " + path, "open " + path}));
}

TEST_F(SharingTest, copiesIntoTheDropboxFolderAndReplacesNothing) {
    const std::string path = m_folder.file("Recorded Live - x.wav");
    const std::string sound(3000000, 'x');
    SoundFiles::write(path, sound);
    const auto send = [&] {
        m_sharing.performanceComplete(QString::fromStdString(path));
        choose(2);
        return next();
    };
    EXPECT_THAT(send(), HasSubstr("No Dropbox folder is set up"));
    for (const char* broken : {"", "{\"personal\": 7", "[]", "{\"personal\": {\"path\": \"x\"}}"}) {
        setUpDropbox(broken);
        EXPECT_THAT(send(), HasSubstr("Dropbox folder is")) << broken;
    }
    setUpDropbox("{\"business\": {\"path\": \"" + m_folder.file("Box") + "\", \"host\": 1}}");
    EXPECT_THAT(send(), HasSubstr("Box: the Dropbox folder is not there"));
    fs::create_directories(m_folder.file("Box"));
    EXPECT_THAT(send(), HasSubstr("is in Dropbox: " + m_folder.file("Box/Recorded Live - x.wav")));
    EXPECT_THAT(send(), HasSubstr("Recorded Live - x 2.wav"));
    EXPECT_EQ(contentsOf(m_folder.file("Box/Recorded Live - x.wav")), sound);
    EXPECT_EQ(std::distance(fs::directory_iterator(m_folder.file("Box")), {}), 2);
}

TEST_F(SharingTest, opensWhatIsPastedOrDropped) {
    m_sharing.paste();
    EXPECT_THAT(next(), HasSubstr("no sound on the clipboard"));
    m_clipboard.sound = "no sound";
    m_sharing.paste();
    EXPECT_THAT(next(), HasSubstr("Pasted Audio"));
    EXPECT_EQ(std::distance(fs::directory_iterator(m_folder.file("data")), {}), 0);
    const std::string wav = SoundFiles::wav({}, std::string(2000, '\x11'));
    m_clipboard.sound = QByteArray::fromStdString(wav);
    m_sharing.paste();
    ASSERT_EQ(m_arrived.size(), 1);
    EXPECT_THAT(m_arrived[0].toStdString(), HasSubstr("Pasted Audio - "));
    EXPECT_EQ(contentsOf(m_arrived[0].toStdString()), wav);
    m_clipboard.files = {"/a.wav", "/b.wav"};
    m_sharing.paste();
    EXPECT_EQ(m_arrived, m_clipboard.files);
    m_sharing.drop({QUrl("https://example.org/a.wav")});
    EXPECT_THAT(next(), HasSubstr("Only files"));
    m_sharing.drop({QUrl("https://example.org/a.wav"), QUrl("file:///a%20b.wav")});
    EXPECT_EQ(m_arrived, QStringList("/a b.wav"));
}
