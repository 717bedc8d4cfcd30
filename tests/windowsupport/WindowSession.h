#pragma once

#include <QGuiApplication>
#include <memory>

#include "DisplayServer.h"
#include "ScratchFolder.h"

/// What a program needs before it can open the instrument's window out of sight: a display, and
/// empty folders for data and defaults. Made before anything else.
class WindowSession {
  public:
    /// Pixels of the screen.
    WindowSession(int width, int height);
    const ScratchFolder& folder() const { return m_folder; }

  private:
    ScratchFolder m_folder;
    DisplayServer m_display;
    int m_argumentCount = 1;
    char m_name[7] = "ombrix";
    char* m_arguments[2] = {m_name, nullptr};
    std::unique_ptr<QGuiApplication> m_application;
};
