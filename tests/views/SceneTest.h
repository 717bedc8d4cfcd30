#pragma once

#include <gtest/gtest.h>

#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <memory>

#include "Fingers.h"
#include "ScratchFolder.h"
#include "screens/MainLoop.h"
#include "screens/OmbrixViewController.h"

/// A window of QML over a `controller` whose data folder was empty; active, the presets arrived.
class SceneTest : public testing::Test {
  protected:
    explicit SceneTest(const char* qml) : m_qml(qml) {}
    void SetUp() override;

    /// The visible item of that objectName, or null.
    QQuickItem* item(const QString& name);
    bool comes(const QString& name);
    bool goes(const QString& name);
    bool hasFocus(const QString& name);
    void click(const QString& name);
    void tap(const QString& name);
    void key(Qt::Key key);

    ScratchFolder m_folder;
    std::unique_ptr<OmbrixViewController> m_controller;
    MainLoop m_loop;
    QQmlEngine m_engine;
    std::unique_ptr<QObject> m_made;
    std::unique_ptr<Fingers> m_fingers;
    QQuickWindow* m_window = nullptr;

  private:
    QPoint middleOf(const QString& name);

    const char* m_qml;
};
