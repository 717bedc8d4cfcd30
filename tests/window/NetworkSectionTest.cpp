#include <gtest/gtest.h>

#include <QTest>

#include "InstrumentWindow.h"
#include "audiounits/devices/AudioDevices.h"

// The outcome is that of a real socket: nobody answers there.
TEST(NetworkSectionTest, anAddressThatIsTypedIsInvitedAndTheProblemShows) {
    std::string error;
    ASSERT_TRUE(AudioDevices::choose("clock", error)) << error;
    InstrumentWindow instrument;
    instrument.window().requestActivate();
    ASSERT_TRUE(instrument.comesTo([&] { return instrument.window().isActive(); }));
    NetworkSetup& network = *instrument.controller().midi()->network();
    network.chooseMode("nearby");
    ASSERT_TRUE(instrument.comesTo([&] { return !network.place().isEmpty(); })) << "it is open";
    instrument.tap("settingsButton");
    ASSERT_TRUE(instrument.comesTo([&] { return instrument.has("networkAddress"); }));

    QQuickItem& field = instrument.item("networkAddress");
    const auto enter = [&](const QString& text) {
        field.forceActiveFocus();
        for (const QChar letter : text)
            QTest::sendKeyEvent(QTest::Click, &instrument.window(), Qt::Key_unknown, letter, {});
        QTest::keyClick(&instrument.window(), Qt::Key_Return);
    };
    const auto shown = [&] {
        return instrument.has("networkProblem")
                   ? instrument.item("networkProblem").property("text").toString()
                   : QString();
    };
    enter("nowhere:x");
    EXPECT_TRUE(shown().contains("nowhere:x")) << qPrintable(shown());
    EXPECT_EQ(field.property("text"), "nowhere:x") << "it can be mended";
    field.setProperty("text", "");
    enter("127.0.0.1:9");
    EXPECT_EQ(field.property("text"), "");
    EXPECT_TRUE(instrument.comesTo([&] { return shown().contains("127.0.0.1:9"); }, 20))
        << qPrintable(shown());
}
