#include "WindowSession.h"

#include <cstdlib>

#include "defaults/UserDefaults.h"
#include "main/QtManners.h"
#include "screens/TutorialPages.h"

WindowSession::WindowSession(int width, int height) : m_display(width, height) {
    setenv("OMBRIX_DATA", m_folder.file("data").c_str(), 1);
    setenv("XDG_CONFIG_HOME", m_folder.file("config").c_str(), 1);
    setenv("XDG_RUNTIME_DIR", m_folder.file("").c_str(), 0);
    QtManners::settle();
    UserDefaults().set(kTutorialProgressKey, 1000);  // not a newcomer
    m_application = std::make_unique<QGuiApplication>(m_argumentCount, m_arguments);
}
