#include "OpenInMenu.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QPointer>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <thread>

#include "ManualClock.h"
#include "PortalStandIn.h"
#include "ScratchFolder.h"
#include "SoundFiles.h"

namespace {

bool comesTo(const std::function<bool()>& truth) {
    for (int i = 0; i < 1000 && !truth(); ++i) {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCoreApplication::processEvents();
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return truth();
}

/// As long as a user takes at least to choose a program: by then the portal's reply has come.
void hesitate() {
    int left = 40;
    comesTo([&] { return --left == 0; });
}

class OpenInMenuTest : public testing::Test {
  protected:
    OpenInMenuTest() {
        SoundFiles::write(m_file, "a sound");
        // Stands in for what the desktop would start.
        SoundFiles::write(m_folder.file("xdg-open"),
                          "#!/bin/sh\necho \"$1\" > " + m_folder.file("plain") + "\n");
        std::filesystem::permissions(m_folder.file("xdg-open"), std::filesystem::perms::all);
        setenv("PATH", (m_folder.path().string() + ":" + getenv("PATH")).c_str(), 1);
    }
    OpenInMenu* present() {
        return OpenInMenu::present(QString::fromStdString(m_file),
                                   [](const QString& line) { ADD_FAILURE() << qPrintable(line); });
    }
    bool openedPlainly() {
        return comesTo([&] { return std::filesystem::exists(m_folder.file("plain")); });
    }

    ScratchFolder m_folder;
    ManualClock m_clock;
    std::string m_file = m_folder.file("a b.wav");
};

}  // namespace

TEST_F(OpenInMenuTest, handsTheFileToThePortalAndStaysTwoSecondsAfterTheMenu) {
    PortalStandIn portal;
    for (const bool old : {false, true}) {
        SCOPED_TRACE(old ? "old portal" : "new portal");
        portal.namesItself = old;
        portal.calls = 0;
        const QPointer<OpenInMenu> menu = present();
        ASSERT_TRUE(comesTo([&] { return portal.calls == 1; }));
        EXPECT_EQ(portal.opened, "a sound");
        EXPECT_TRUE(portal.options["ask"].toBool());
        hesitate();
        m_clock.step(60);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        ASSERT_TRUE(menu) << "as long as the menu is open";
        portal.respond(0);
        ASSERT_TRUE(comesTo([&] { return RunLoop::main().nextDue() < 1e9; }));
        m_clock.step(1.99);
        EXPECT_TRUE(menu);
        m_clock.step(0.02);
        EXPECT_TRUE(comesTo([&] { return !menu; }));
    }
    EXPECT_FALSE(std::filesystem::exists(m_folder.file("plain")));
}

TEST_F(OpenInMenuTest, opensTheFilePlainlyWhereThePortalCannot) {
    {
        PortalStandIn portal;
        portal.refuses = true;
        present();
        EXPECT_TRUE(openedPlainly());
        std::filesystem::remove(m_folder.file("plain"));
        portal.refuses = false;
        present();
        ASSERT_TRUE(comesTo([&] { return portal.calls == 2; }));
        portal.respond(2);
        EXPECT_TRUE(openedPlainly());
    }
    std::filesystem::remove(m_folder.file("plain"));
    present();
    EXPECT_TRUE(openedPlainly()) << "no portal at all";
}
