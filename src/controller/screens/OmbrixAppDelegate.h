#pragma once

#include <QObject>

#include "screens/OmbrixViewController.h"

/// What the desktop tells the application, and what it does: owns the one view controller. [main]
class OmbrixAppDelegate : public QObject {
    Q_OBJECT
    Q_PROPERTY(OmbrixViewController* viewController READ viewController CONSTANT)

  public:
    OmbrixViewController* viewController() { return m_viewController.get(); }

    /// Loads the view, then opens the files.
    bool didFinishLaunchingWithOptions(const QStringList& files);
    bool handleOpenURL(const QStringList& files);
    void applicationWillResignActive() { m_viewController->willBackground(false); }
    void applicationDidBecomeActive() { m_viewController->willForeground(false); }
    void applicationDidEnterBackground() { m_viewController->willBackground(true); }
    void applicationWillEnterForeground() { m_viewController->willForeground(true); }
    void applicationWillTerminate() { m_viewController->willTerminate(); }

  private:
    std::unique_ptr<OmbrixViewController> m_viewController =
        std::make_unique<OmbrixViewController>();
};
