#include <QGuiApplication>
#include <QQmlApplicationEngine>

#include "screens/MainLoop.h"
#include "screens/OmbrixAppDelegate.h"

int main(int argc, char** argv) {
    QGuiApplication application(argc, argv);
    OmbrixAppDelegate delegate;
    MainLoop loop;
    delegate.applicationDidFinishLaunching(application.arguments().mid(1));
    QQmlApplicationEngine engine;
    engine.addImportPath("qrc:/qt/qml");
    engine.setInitialProperties({{"controller", QVariant::fromValue(delegate.viewController())}});
    engine.load(QUrl("qrc:/qt/qml/Ombrix/Views/main/Main.qml"));
    const int code = engine.rootObjects().isEmpty() ? 1 : application.exec();
    delegate.applicationWillTerminate();
    return code;
}
