#include <gtest/gtest.h>

#include <QAccessible>

#include "Piano.h"
#include "keyboard/KeyboardLayout.h"

namespace {

struct Place {
    int tag;
    QRectF normal;
    QRectF large;
};

const Place kPlaces[] = {
    {0, {0, 0, 51, 229}, {0, 0, 102, 229}},           // A0
    {1, {19, -4, 64, 154}, {45, -4, 115, 154}},       // A#0
    {2, {51, 0, 51, 229}, {102, 0, 102, 229}},        // B0
    {4, {121, -4, 64, 154}, {249, -4, 115, 154}},     // C#1
    {6, {172, -4, 64, 154}, {351, -4, 115, 154}},     // D#1
    {9, {274, -4, 64, 154}, {555, -4, 115, 154}},     // F#1
    {13, {376, -4, 64, 154}, {759, -4, 115, 154}},    // A#1
    {39, {1173, 0, 51, 229}, {2346, 0, 102, 229}},    // C4
    {40, {1192, -4, 64, 154}, {2391, -4, 115, 154}},  // C#4
    {87, {2601, 0, 51, 229}, {5202, 0, 102, 229}},    // C8
};

QString spoken(PianoKeyButton& key, QAccessible::Text text = QAccessible::Name) {
    return QAccessible::queryAccessibleInterface(&key)->text(text);
}

std::string texts(const PianoKeyButton& key) {
    std::string all;
    for (const KeyLabel& label : key.labels())
        all += label.text.toStdString();
    return all;
}

}  // namespace

TEST(KeyboardLayoutTest, placesKeysInTheOrderOfPitch) {
    for (const bool large : {false, true}) {
        Piano piano(large ? "width: 1280; largeKeys: true" : "width: 1280");
        EXPECT_EQ(piano.keys().contentWidth(), large ? 5304 : 2652);
        EXPECT_EQ(piano.keys().contentX(), large ? 2012 : 686);
        for (const Place& place : kPlaces) {
            PianoKeyButton& key = piano.key(place.tag);
            const QRectF frame(key.position(), key.size());
            EXPECT_EQ(frame, large ? place.large : place.normal) << place.tag;
            EXPECT_EQ(key.tag(), place.tag);
            EXPECT_EQ(key.sharp(), frame.y() < 0) << place.tag;
        }
        const QString suffix = large ? "-fat.png" : ".png";
        EXPECT_EQ(piano.key(39).picture(), "white-note-up" + suffix);
        piano.key(40).setHighlighted(true);
        EXPECT_EQ(piano.key(40).picture(), "black-note-down" + suffix);
        piano.key(40).setY(30);
        KeyboardLayout::layoutKeyboardVertically(piano.keys());
        EXPECT_EQ(piano.key(40).y(), -4);
    }
}

TEST(KeyboardLayoutTest, countsOctavesOnlyWithLabels) {
    Piano piano;
    EXPECT_EQ(texts(piano.key(0)), "A");
    EXPECT_EQ(texts(piano.key(39)), "C4");
    EXPECT_EQ(texts(piano.key(87)), "C8");
    EXPECT_EQ(texts(piano.key(40)), "");
    EXPECT_EQ(spoken(piano.key(2)), "B 0");
    EXPECT_EQ(spoken(piano.key(39)), "C 4");
    EXPECT_EQ(spoken(piano.key(39), QAccessible::Description), "Piano key");
    EXPECT_EQ(spoken(piano.key(40)), "Piano key, sharp");
    EXPECT_EQ(spoken(piano.key(40), QAccessible::Description), "");
    piano.keys().setShowLabels(false);
    EXPECT_EQ(texts(piano.key(39)), "");
    EXPECT_EQ(spoken(piano.key(39)), "C 0");
    EXPECT_EQ(QAccessible::queryAccessibleInterface(&piano.keys())->text(QAccessible::Name),
              "Piano Keyboard");
}

TEST(KeyboardLayoutTest, keepsTheRelativePlaceWithoutClamping) {
    Piano piano;
    piano.keys().setContentX(1372);
    piano.keys().setLargeKeys(true);
    EXPECT_NEAR(piano.keys().contentX(), (1372 + 640) / 3932. * 6584 - 640, 1e-9);
    piano.keys().setContentX(4024);  // the end
    piano.keys().setLargeKeys(false);
    EXPECT_NEAR(piano.keys().contentX(), (4024 + 640) / 6584. * 3932 - 640, 1e-9);
    EXPECT_GT(piano.keys().contentX(), 1372);  // beyond the end
}

TEST(KeyboardLayoutTest, aScreenReaderPlaysAKeyThatIsOutOfSight) {
    Piano piano;
    QAccessibleInterface* const key = QAccessible::queryAccessibleInterface(&piano.key(0));
    key->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(piano.sounding(), "0 ");
    piano.keys().setLargeKeys(true);
    EXPECT_EQ(piano.played(), "+0 -0 ");
}

TEST(KeyboardLayoutTest, labelsMoveAndChangeColourWithTheKey) {
    Piano piano;
    PianoKeyButton& key = piano.key(39);
    for (const bool down : {true, true, false, false}) {
        key.setHighlighted(down);
        EXPECT_EQ(key.labels()[0].frame.y(), down ? 173 : 165);
        EXPECT_EQ(key.labels()[1].frame.y(), down ? 149 : 141);
        EXPECT_EQ(key.labels()[0].highlighted, down);
    }
}
