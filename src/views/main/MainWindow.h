#pragma once

#include <QQmlApplicationEngine>
#include <QQuickWindow>
#include <memory>

#include "main/WindowPlace.h"

class OmbrixViewController;

/// The window of the instrument, made from Main.qml and bound to its controller. It opens as it was
/// left. [main]
class MainWindow {
  public:
    /// The controller has loaded its view, and outlives the window.
    explicit MainWindow(OmbrixViewController& controller);

    /// Null when the window could not be made.
    QQuickWindow* window() const;

  private:
    QQmlApplicationEngine m_engine;
    std::unique_ptr<WindowPlace> m_place;
};
