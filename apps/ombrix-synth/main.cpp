#include <QGuiApplication>

#include "main/MainWindow.h"
#include "screens/MainLoop.h"
#include "screens/OmbrixAppDelegate.h"

int main(int argc, char** argv) {
    QGuiApplication application(argc, argv);
    OmbrixAppDelegate delegate;
    MainLoop loop;
    delegate.applicationDidFinishLaunching(application.arguments().mid(1));
    const MainWindow window(*delegate.viewController());
    const int code = window.window() ? application.exec() : 1;
    delegate.applicationWillTerminate();
    return code;
}
