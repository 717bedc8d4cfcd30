#include "screens/OmbrixAppDelegate.h"

bool OmbrixAppDelegate::applicationDidFinishLaunching(const QStringList& files) {
    m_viewController->viewDidLoad();
    if (!files.isEmpty())
        handleOpenURL(files);
    return true;
}

bool OmbrixAppDelegate::handleOpenURL(const QStringList& files) {
    m_viewController->openFiles(files);
    return true;
}
