#include <QGuiApplication>

#include "SessionSharing.h"
#include "main/MainWindow.h"
#include "screens/MainLoop.h"
#include "screens/OmbrixAppDelegate.h"

int main(int argc, char** argv) {
    QGuiApplication application(argc, argv);
    SessionSharing desktop;
    OmbrixAppDelegate delegate;
    MainLoop loop;
    delegate.applicationDidFinishLaunching(application.arguments().mid(1));
    delegate.viewController()->sharing()->setDesktop(&desktop);
    const MainWindow window(*delegate.viewController());
    const int code = window.window() ? application.exec() : 1;
    delegate.applicationWillTerminate();
    return code;
}
