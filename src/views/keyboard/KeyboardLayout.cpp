#include "keyboard/KeyboardLayout.h"

#include <array>

#include "keyboard/AccessibleItem.h"
#include "keyboard/ScrollingKeyboardView.h"

namespace {

/// Points, in a white key.
constexpr double kNameY = 165;
constexpr double kOctaveY = 141;
constexpr double kLabelHeight = 48;

constexpr std::array<const char*, 7> kNoteNames = {"A", "B", "C", "D", "E", "F", "G"};
constexpr int kC = 2;

PianoKeyButton* addKey(ScrollingKeyboardView& keyboard, const QString& colour,
                       const KeySizes& sizes, const QRectF& frame) {
    PianoKeyButton* const key = keyboard.insertKey();
    key->addTarget(ControlEvents::touchDown,
                   [&keyboard](PianoKeyButton& sender) { keyboard.tinkle(sender); });
    key->addTarget(ControlEvents::touchUp,
                   [&keyboard](PianoKeyButton& sender) { keyboard.untinkle(sender); });
    const QString picture = colour + "-note-%1" + sizes.pictureSuffix + ".png";
    key->setPictures(picture.arg("up"), picture.arg("down"));
    key->setPosition(frame.topLeft());
    key->setSize(frame.size());
    return key;
}

void describe(PianoKeyButton& key, const QString& name, const QString& hint) {
    describeItem(key, QAccessible::Button, name, hint);
    onAccessiblePress(key, *key.parentItem()->parentItem(), SLOT(pressShortly()));
}

void addWhiteKeys(ScrollingKeyboardView& keyboard, const KeySizes& sizes) {
    const double width = sizes.whiteWidth;
    int octave = 0;  // counted only with labels
    for (int i = 0; i < kWhiteKeyCount; ++i) {
        PianoKeyButton* const key =
            addKey(keyboard, "white", sizes, {i * width, 0, width, kKeyboardHeight});
        key->setSharp(false);
        const QString name = kNoteNames[static_cast<std::size_t>(i % 7)];
        if (keyboard.showLabels()) {
            key->addLabel(name, {0, kNameY, width, kLabelHeight});
            if (i % 7 == kC)
                key->addLabel(QString::number(++octave), {0, kOctaveY, width, kLabelHeight});
        }
        describe(*key, QString("%1 %2").arg(name).arg(octave),
                 ScrollingKeyboardView::tr("Piano key"));
    }
}

void addBlackKeys(ScrollingKeyboardView& keyboard, const KeySizes& sizes) {
    int place = 5;  // in the pattern of an octave, 1 to 7; no black key is at 2 and at 6
    double x = sizes.firstBlackX;
    for (int i = 0; i < kBlackKeyCount; ++i) {
        if (place == 2 || place == 6) {
            x += sizes.whiteWidth;
            ++place;
        }
        PianoKeyButton* const key =
            addKey(keyboard, "black", sizes, {x, kBlackKeyY, sizes.blackWidth, kBlackKeyHeight});
        key->setSharp(true);
        describe(*key, ScrollingKeyboardView::tr("Piano key, sharp"), {});
        place = place + 1 < 7 ? place + 1 : place - 6;
        x += sizes.whiteWidth;
    }
}

/// By the place where they begin: no two keys begin at the same.
void orderByPitch(ScrollingKeyboardView& keyboard) {
    std::vector<PianoKeyButton*> slots(static_cast<std::size_t>(keyboard.contentWidth()));
    for (PianoKeyButton* const key : keyboard.keys())
        slots[static_cast<std::size_t>(key->x())] = key;
    int next = 0;
    for (PianoKeyButton* const key : slots) {
        if (!key)
            continue;
        keyboard.keyboardButtons()[static_cast<std::size_t>(next)] = key;
        key->setTag(next++);
    }
}

}  // namespace

void KeyboardLayout::layoutKeyboard(ScrollingKeyboardView& keyboard) {
    describeItem(keyboard, QAccessible::Grouping, ScrollingKeyboardView::tr("Piano Keyboard"));
    const KeySizes& sizes = keyboard.largeKeys() ? kLargeKeys : kNormalKeys;
    keyboard.removeKeys();
    addWhiteKeys(keyboard, sizes);
    keyboard.setContentSize(sizes.contentSize());
    addBlackKeys(keyboard, sizes);
    orderByPitch(keyboard);
}

void KeyboardLayout::layoutKeyboardVertically(ScrollingKeyboardView& keyboard) {
    for (PianoKeyButton* const key : keyboard.keys())
        key->setY(key->sharp() ? kBlackKeyY : 0);
}
