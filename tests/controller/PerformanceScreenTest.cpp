#include "screens/PerformanceScreen.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "ManualClock.h"
#include "ScratchFolder.h"
#include "audiounits/devices/AudioDevices.h"
#include "audiounits/devices/ManualDevice.h"
#include "machine/DeviceKind.h"
#include "screens/RemainingTime.h"
#include "startup/Instrument.h"

namespace {

using testing::ElementsAre;
using testing::StartsWith;

class PerformanceScreenTest : public testing::Test {
  protected:
    PerformanceScreenTest() {
        setenv("OMBRIX_DATA", m_folder.path().c_str(), 1);
        AudioDevices::use(m_device);
        m_instrument.play();
        const auto keep = [this](const QString& text) { m_said.push_back(text.toStdString()); };
        QObject::connect(&m_screen, &PerformanceScreen::announced, keep);
        QObject::connect(&m_screen, &PerformanceScreen::problem, keep);
        QObject::connect(&m_screen, &PerformanceScreen::complete,
                         [this](const QString& path) { m_complete.push_back(path); });
        QObject::connect(&m_screen, &PerformanceScreen::changed, [this] {
            const std::string title = m_screen.buttonTitle().toStdString();
            if (m_titles.empty() || m_titles.back() != title)
                m_titles.push_back(title);
        });
    }
    void key() {
        m_instrument.notes().tinkleIvory(40);
        m_instrument.notes().untinkleIvory(40);
        std::vector<std::int16_t> sound(4410);
        m_device->render(sound);
    }

    ScratchFolder m_folder;
    ManualClock m_clock;
    std::shared_ptr<ManualDevice> m_device = std::make_shared<ManualDevice>();
    Instrument m_instrument{false};
    Performance m_performance{m_instrument.notes(), m_instrument.recordingUnit()};
    std::optional<std::uint64_t> m_free = 88200ull * 7800;
    PerformanceScreen m_screen{m_performance, [this] { return m_free; }};
    std::vector<std::string> m_titles, m_said;
    QStringList m_complete;
};

}  // namespace

TEST_F(PerformanceScreenTest, showsTheTimeAndWhatTheDiskHolds) {
    EXPECT_EQ(m_screen.buttonTitle(), "Record");
    EXPECT_EQ(m_screen.remaining(), "");
    m_screen.toolbarRecordClicked();
    EXPECT_EQ(m_screen.remaining(), "2 h 10 min left");
    m_screen.toolbarRecordClicked();
    EXPECT_EQ(m_screen.remaining(), "");
    EXPECT_THAT(m_titles, ElementsAre("Waiting...", "Record"));
    EXPECT_THAT(m_said, ElementsAre("Waiting to record.", "Record cancelled."));
    EXPECT_TRUE(m_complete.isEmpty());
    m_titles.clear();
    m_said.clear();
    m_screen.toolbarRecordClicked();
    key();
    EXPECT_TRUE(m_screen.recording());
    m_clock.pass(1);
    m_free = 88200 * 59;
    m_clock.pass(5);
    EXPECT_EQ(m_screen.remaining(), "59 s left");
    EXPECT_TRUE(m_screen.diskNearlyFull());
    m_clock.pass(20);
    EXPECT_THAT(m_said, ElementsAre("Waiting to record.", StartsWith("The disk is nearly full")));
    key();
    m_clock.pass(29);
    EXPECT_EQ(m_titles.back(), "00:55") << "the key gave 30 more seconds";
    m_clock.pass(1);
    EXPECT_EQ(m_titles.back(), "Record");
    EXPECT_EQ(m_screen.remaining(), "");
    ASSERT_EQ(m_complete.size(), 1);
    EXPECT_TRUE(std::filesystem::exists(m_complete[0].toStdString()));
    m_clock.pass(2);
    EXPECT_EQ(m_screen.state(), 0);
}

TEST(RemainingTime, isInWords) {
    EXPECT_EQ(RemainingTime::text(RemainingTime::seconds(88200ull * 3600)), "1 h 0 min left");
    EXPECT_EQ(RemainingTime::text(3599), "59 min left");
    EXPECT_EQ(RemainingTime::text(0), "0 s left");
}

TEST(DeviceKind, isWhatTheAdministratorWroteElseWhatTheFirmwareSays) {
    const ScratchFolder root;
    const auto write = [&](const std::string& path, const std::string& text) {
        std::filesystem::create_directories(std::filesystem::path(root.file(path)).parent_path());
        std::ofstream(root.file(path)) << text;
    };
    const auto kind = [&] { return deviceKind(root.path().string()); };
    EXPECT_EQ(kind(), DeviceKind::computer);
    write("sys/firmware/devicetree/base/chassis-type", std::string("handset\0", 8));
    EXPECT_EQ(kind(), DeviceKind::phone);
    write("sys/class/dmi/id/chassis_type", "32\n");
    EXPECT_EQ(kind(), DeviceKind::tablet);
    write("etc/machine-info", "PRETTY_HOSTNAME=x\nCHASSIS=\"laptop\"\n");
    EXPECT_EQ(kind(), DeviceKind::computer);
}
