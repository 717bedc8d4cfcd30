#include <gtest/gtest.h>

#include <QGuiApplication>
#include <QQuickWindow>

// The tests of one process share one application. Without a display of its own it shows nothing,
// and draws with the software renderer.
int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    if (testing::GTEST_FLAG(list_tests))
        return RUN_ALL_TESTS();
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QML_NO_TOUCH_COMPRESSION", "1");  // every move counts, at once
    QGuiApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
