#include <QTest>

#include "SceneTest.h"

namespace {

/// The screens over some of the main screen's buttons, in a window of their own.
constexpr const char* kScene = R"(
import QtQuick
import Ombrix.Views
Window {
    id: window
    required property OmbrixViewController controller
    width: 1024; height: 700; visible: true; color: Theme.ground
    Item {
        anchors.fill: parent
        PushButton { objectName: "presetButton"; text: "Preset"; x: 8; onClicked: window.controller.toolbarPresetClicked() }
        PushButton { objectName: "saveButton"; text: "Save"; x: 200; onClicked: window.controller.toolbarSaveClicked() }
        PushButton { objectName: "deleteButton"; text: "Delete"; x: 300; onClicked: window.controller.toolbarDeleteClicked() }
        PushButton { objectName: "grainModeButton"; text: "Mode"; x: 300; y: 400; onClicked: window.controller.grainModeClicked() }
        Screens { anchors.fill: parent; controller: window.controller }
    }
}
)";

class ScreensTest : public SceneTest {
  protected:
    ScreensTest() : SceneTest(kScene) {}

    QString title() { return m_controller->presetBar()->title(); }
    QString tag() { return m_controller->presentation()->tag(); }
    void type(const QString& text) {
        for (const QChar c : text)
            QTest::sendKeyEvent(QTest::Click, m_window, Qt::Key_unknown, c, {});
    }
    /// What was open has faded.
    bool gone() {
        return QTest::qWaitFor([this] {
            return !item("itemList") && !item("presetNameField") && !item("alertCancelButton");
        });
    }
};

}  // namespace

TEST_F(ScreensTest, saveAndFindAPreset) {
    // Saved by keys alone, under a name that starts where no shipped one does.
    click("saveButton");
    ASSERT_TRUE(hasFocus("presetNameField"));
    type("\u00c9t\u00fcde");
    key(Qt::Key_Tab);
    EXPECT_TRUE(hasFocus("performSaveButton"));
    key(Qt::Key_Tab);
    EXPECT_TRUE(hasFocus("presetNameField"));
    type(" of the long night");
    key(Qt::Key_Return);
    EXPECT_EQ(title(), "\u00c9t\u00fcde of the long night");
    EXPECT_TRUE(hasFocus("saveButton"));
    ASSERT_TRUE(gone());

    // Its button leaves the list open, with what was typed; return chooses the only one left.
    m_controller->presetBar()->previous();
    const QString other = title();
    click("presetButton");
    ASSERT_TRUE(hasFocus("itemList"));
    QObject* const list = m_controller->presentation()->content();
    type("etude");
    EXPECT_TRUE(hasFocus("searchField"));
    click("presetButton");
    EXPECT_EQ(m_controller->presentation()->content(), list);
    EXPECT_EQ(item("itemList")->property("count"), 1);
    item("searchField")->forceActiveFocus();
    key(Qt::Key_Return);
    EXPECT_EQ(title(), "\u00c9t\u00fcde of the long night");
    EXPECT_TRUE(gone());

    // Escape, at once after opening, and a finger elsewhere close.
    click("presetButton");
    EXPECT_EQ(item("searchField")->property("text"), "etude");
    click("searchClearButton");
    EXPECT_GT(item("itemList")->property("count").toInt(), 1);
    key(Qt::Key_Escape);
    EXPECT_EQ(tag(), "");
    EXPECT_TRUE(gone());
    click("grainModeButton");
    ASSERT_TRUE(item("itemList"));
    EXPECT_GT(item("itemList")->mapToScene({0, 0}).y(), 444);  // below the button in the lower half
    m_fingers->press(0, {900, 200});
    m_fingers->release(0);
    EXPECT_EQ(tag(), "");
    EXPECT_TRUE(gone());
}

TEST_F(ScreensTest, askBeforeAPresetIsDeleted) {
    click("saveButton");
    type("Mine");
    key(Qt::Key_Return);
    ASSERT_TRUE(gone());
    // The first answer that has the focus is the harmless one.
    click("deleteButton");
    ASSERT_TRUE(hasFocus("alertCancelButton"));
    key(Qt::Key_Return);
    EXPECT_TRUE(gone());
    click("deleteButton");
    ASSERT_TRUE(item("alertCancelButton"));
    key(Qt::Key_Escape);
    EXPECT_FALSE(m_controller->closeTop());
    EXPECT_EQ(title(), "Mine");
    EXPECT_TRUE(gone());
    click("deleteButton");
    key(Qt::Key_Tab);
    ASSERT_TRUE(hasFocus("alertOtherButton"));
    key(Qt::Key_Return);
    EXPECT_NE(title(), "Mine");
    EXPECT_EQ(m_controller->hasPresetWithName("mine"), 0);
}
