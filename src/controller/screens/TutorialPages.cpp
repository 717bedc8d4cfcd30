#include "screens/TutorialPages.h"

#include <QCoreApplication>

namespace {

using Kind = TutorialAnchor::Kind;

struct Page {
    const char* message;
    Kind kind;
    const char* objectName;
};

constexpr Page kPages[] = {
    {QT_TRANSLATE_NOOP("Tutorial",
                       "Hold the microphone and make a sound. When you let go, the sound is your "
                       "instrument."),
     Kind::view, "microphoneButton"},
    {QT_TRANSLATE_NOOP("Tutorial",
                       "Play it with as many fingers as you like. Slide along the keys to run "
                       "through the notes."),
     Kind::view, "keyboard"},
    {QT_TRANSLATE_NOOP("Tutorial",
                       "Drag a dial to shape the sound. This one sets how fast the grains travel "
                       "through it."),
     Kind::view, "grainSpeedDial"},
    {QT_TRANSLATE_NOOP("Tutorial", "Choose here which way the grains take through the sound."),
     Kind::view, "grainModeButton"},
    {QT_TRANSLATE_NOOP("Tutorial",
                       "Record what you play. The recording begins with your first note."),
     Kind::barButtonItem, "recordButton"},
};

}  // namespace

std::vector<TutorialItem> tutorialPages() {
    std::vector<TutorialItem> items;
    for (const Page& page : kPages)
        items.push_back({QCoreApplication::translate("Tutorial", page.message),
                         {page.kind, QString::fromLatin1(page.objectName)}});
    return items;
}
