#include "screens/SettingsController.h"

#include <gtest/gtest.h>

#include "ScratchFolder.h"
#include "notifications/NotificationCentre.h"

namespace {

using Marks = QList<bool>;

class SettingsControllerTest : public testing::Test {
  protected:
    SettingsControllerTest() {
        m_observer = NotificationCentre::defaultCentre().addObserver(
            "com.quaddle.ombrix.settings-changed", [this] { ++m_notices; });
    }
    ~SettingsControllerTest() override {
        NotificationCentre::defaultCentre().removeObserver(m_observer);
    }
    /// What another program would find.
    UserDefaults stored() const { return UserDefaults(m_folder.file("defaults")); }

    ScratchFolder m_folder;
    UserDefaults m_defaults{m_folder.file("defaults")};
    SettingsController m_settings{m_defaults};
    int m_notices = 0;
    NotificationCentre::Token m_observer = 0;
};

}  // namespace

TEST_F(SettingsControllerTest, nothingStoredIsStandardKeysWithLabelsAndGainControl) {
    EXPECT_EQ(m_settings.keySizeMarks(), (Marks{true, false}));
    EXPECT_FALSE(m_settings.largeKeys());
    EXPECT_TRUE(m_settings.showLabels());
    EXPECT_TRUE(m_settings.automaticGain());
    EXPECT_EQ(m_notices, 0);
}

TEST_F(SettingsControllerTest, theFirstChoiceOfASizeTakesTheMarkFromTheSecondRow) {
    m_settings.chooseKeySize(1);
    EXPECT_EQ(m_settings.keySizeMarks(), (Marks{true, true}));
    EXPECT_EQ(stored().integer("keyboard-size"), 0);
    EXPECT_TRUE(m_settings.largeKeys());
    EXPECT_EQ(m_notices, 1);

    m_settings.willAppear();
    EXPECT_EQ(m_settings.keySizeMarks(), (Marks{false, true}));
    m_settings.chooseKeySize(0);
    EXPECT_EQ(m_settings.keySizeMarks(), (Marks{true, false}));
    EXPECT_EQ(stored().integer("keyboard-size"), 1);
    m_settings.chooseKeySize(0);
    EXPECT_EQ(m_settings.keySizeMarks(), (Marks{true, false}));
    EXPECT_EQ(m_notices, 3);
    m_settings.chooseKeySize(2);
    EXPECT_EQ(stored().integer("keyboard-size"), 1);
    EXPECT_EQ(m_notices, 3);
}

TEST_F(SettingsControllerTest, theSwitchOfTheLabelsIsStoredAsHidden) {
    m_settings.switchTurned(fourCC("labl"), false);
    EXPECT_EQ(stored().boolean("keyboard-labels"), true);
    EXPECT_FALSE(m_settings.showLabels());
    m_settings.switchTurned(fourCC("gain"), false);
    EXPECT_EQ(stored().boolean("auto-gain-control"), false);
    EXPECT_FALSE(m_settings.automaticGain());
    m_settings.setShowLabels(true);
    EXPECT_EQ(stored().boolean("keyboard-labels"), false);
    EXPECT_EQ(m_notices, 3);
}

TEST_F(SettingsControllerTest, valuesOfNoMeaningAreTheOrdinaryOnes) {
    m_defaults.set("keyboard-size", 7);
    m_defaults.set("keyboard-labels", "no");
    m_settings.willAppear();
    EXPECT_EQ(m_settings.keySizeMarks(), (Marks{true, false}));
    EXPECT_FALSE(m_settings.largeKeys());
    EXPECT_TRUE(m_settings.showLabels());
    m_settings.chooseKeySize(1);
    EXPECT_EQ(m_settings.keySizeMarks(), (Marks{false, true}));
}
