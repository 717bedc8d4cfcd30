#include <gtest/gtest.h>

#include <QGuiApplication>
#include <cstdlib>
#include <filesystem>
#include <thread>

#include "DisplayServer.h"
#include "Process.h"
#include "ScratchFolder.h"

namespace {

/// A session bus that only this process and its children know.
class SessionBus {
  public:
    SessionBus() {
        setenv("DBUS_SESSION_BUS_ADDRESS", ("unix:path=" + m_folder.file("bus")).c_str(), 1);
        for (int i = 0; i < 500 && !std::filesystem::exists(m_folder.file("bus")); ++i)
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }

  private:
    ScratchFolder m_folder;
    Process m_process{{"dbus-daemon", "--session", "--nofork", "--nopidfile",
                       "--address=unix:path=" + m_folder.file("bus")}};
};

}  // namespace

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    if (testing::GTEST_FLAG(list_tests))
        return RUN_ALL_TESTS();
    const SessionBus bus;
    const DisplayServer display(640, 480);
    const ScratchFolder runtime;
    setenv("XDG_RUNTIME_DIR", runtime.path().c_str(), 1);
    setenv("QT_QPA_PLATFORM", "xcb", 1);
    QGuiApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
