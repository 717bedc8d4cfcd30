#include <gtest/gtest.h>

#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>
#include <cstdlib>

#include "Fingers.h"
#include "ScratchFolder.h"
#include "screens/MainLoop.h"
#include "screens/OmbrixViewController.h"

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

class ScreensTest : public testing::Test {
  protected:
    void SetUp() override {
        setenv("OMBRIX_DATA", m_folder.path().c_str(), 1);
        setenv("XDG_CONFIG_HOME", m_folder.path().c_str(), 1);
        m_controller = std::make_unique<OmbrixViewController>();
        m_controller->viewDidLoad();
        m_engine.addImportPath("qrc:/qt/qml");
        QQmlComponent component(&m_engine);
        component.setData(kScene, QUrl("qrc:/test.qml"));
        m_made.reset(component.createWithInitialProperties(
            {{"controller", QVariant::fromValue(m_controller.get())}}));
        ASSERT_TRUE(m_made) << qPrintable(component.errorString());
        m_window = qobject_cast<QQuickWindow*>(m_made.get());
        m_window->requestActivate();
        EXPECT_TRUE(QTest::qWaitForWindowActive(m_window));
        EXPECT_TRUE(QTest::qWaitFor([this] { return title() != ""; }));
    }

    QString title() { return m_controller->presetBar()->title(); }
    QString tag() { return m_controller->presentation()->tag(); }

    static QQuickItem* itemBelow(QQuickItem* top, const QString& name) {
        for (QQuickItem* item : top->childItems()) {
            QQuickItem* const found = !item->isVisible()           ? nullptr
                                      : item->objectName() == name ? item
                                                                   : itemBelow(item, name);
            if (found)
                return found;
        }
        return nullptr;
    }
    QQuickItem* item(const QString& name) { return itemBelow(m_window->contentItem(), name); }
    bool hasFocus(const QString& name) {
        QQuickItem* const found = item(name);
        return found && found->hasActiveFocus();
    }

    void click(const QString& name) {
        QQuickItem* const found = item(name);
        ASSERT_TRUE(found) << qPrintable(name);
        const QPointF middle(found->width() / 2, found->height() / 2);
        QTest::mouseClick(m_window, Qt::LeftButton, {}, found->mapToScene(middle).toPoint());
    }
    void type(const QString& text) {
        for (const QChar c : text)
            QTest::sendKeyEvent(QTest::Click, m_window, Qt::Key_unknown, c, {});
    }
    void key(Qt::Key key) { QTest::keyClick(m_window, key); }
    /// What was open has faded.
    bool gone() {
        return QTest::qWaitFor([this] {
            return !item("itemList") && !item("presetNameField") && !item("alertCancelButton");
        });
    }

    ScratchFolder m_folder;
    std::unique_ptr<OmbrixViewController> m_controller;
    MainLoop m_loop;
    QQmlEngine m_engine;
    std::unique_ptr<QObject> m_made;
    QQuickWindow* m_window = nullptr;
};

}  // namespace

TEST_F(ScreensTest, saveFindAndDeleteAPreset) {
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
    Fingers fingers(*m_window);
    fingers.press(0, {900, 200});
    fingers.release(0);
    EXPECT_EQ(tag(), "");
    EXPECT_TRUE(gone());

    // The first answer that has the focus is the harmless one.
    click("deleteButton");
    ASSERT_TRUE(hasFocus("alertCancelButton"));
    key(Qt::Key_Return);
    EXPECT_TRUE(gone());
    click("deleteButton");
    ASSERT_TRUE(item("alertCancelButton"));
    key(Qt::Key_Escape);
    EXPECT_FALSE(m_controller->closeTop());
    EXPECT_EQ(title(), "\u00c9t\u00fcde of the long night");
    EXPECT_TRUE(gone());
    click("deleteButton");
    key(Qt::Key_Tab);
    ASSERT_TRUE(hasFocus("alertOtherButton"));
    key(Qt::Key_Return);
    EXPECT_NE(title(), "\u00c9t\u00fcde of the long night");
    EXPECT_EQ(m_controller->hasPresetWithName("\u00e9t\u00fcde of the long night"), 0);
}
