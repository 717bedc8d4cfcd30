#include "screens/OmbrixAppDelegate.h"

bool OmbrixAppDelegate::didFinishLaunchingWithOptions(const QStringList& files) {
    m_viewController->viewDidLoad();
    if (!files.isEmpty())
        handleOpenURL(files);
    return true;
}

bool OmbrixAppDelegate::handleOpenURL(const QStringList& files) {
    m_viewController->openFiles(files);
    return true;
}
