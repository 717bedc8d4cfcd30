#include <QSet>

#include "Steps.h"
#include "parameters/GrainModes.h"

namespace {

const QString kOwn = "Walker's own";

/// Finds a preset by its name in the list and picks it.
void pick(Walk& walk, const QString& name) {
    InstrumentWindow& instrument = walk.instrument();
    instrument.tap("presetButton");
    instrument.pass(0.4);
    if (instrument.has("searchClearButton"))
        instrument.tap("searchClearButton");
    else
        instrument.tap("searchField");
    walk.type(name);
    instrument.tap("item0");
    walk.expectSoon("the preset is chosen: " + name.toStdString(), [&] {
        return walk.controller().presetBar()->title() == name && !walk.controller().arriving();
    });
    instrument.pass(0.4);
}

}  // namespace

void stepThroughPresets(Walk& walk) {
    PresetBar& bar = *walk.controller().presetBar();
    const QString first = bar.title();
    const auto tap = [&](const char* button) {
        walk.instrument().tap(button);
        walk.expectSoon("the sound arrives", [&] { return !walk.controller().arriving(); });
    };
    walk.step("the next preset", Walk::Effect::changes, [&] { tap("nextPresetButton"); });
    walk.expect("its name is shown", bar.title() != first);
    walk.step("the previous preset", Walk::Effect::changes, [&] { tap("previousPresetButton"); });
    walk.expect("the first one's name is back", bar.title() == first);
}

void pickPreset(Walk& walk, const QString& name) {
    walk.step(name.toStdString() + " from the list", Walk::Effect::changes,
              [&] { pick(walk, name); });
}

void pickEveryGrainMode(Walk& walk) {
    // "Linear" and "Bounce" differ only from the end of a sound on: not one after the other.
    for (const int mode : {6, 5, 4, 3, 2, 0, 1}) {
        const std::string name(kGrainModes[std::size_t(mode)].name);
        walk.step("grain mode " + name, Walk::Effect::changes, [&] {
            walk.instrument().tap("grainModeButton");
            walk.instrument().pass(0.4);
            walk.instrument().tap("item" + QString::number(mode));
            walk.instrument().pass(0.3);
            walk.expect(name + " is chosen", walk.controller().grainMode()->index() == mode);
        });
    }
}

void keepAPreset(Walk& walk) {
    InstrumentWindow& instrument = walk.instrument();
    PresetBar& bar = *walk.controller().presetBar();
    walk.step("saved under a name", Walk::Effect::stays, [&] {
        instrument.tap("saveButton");
        instrument.pass(0.4);
        walk.type(kOwn);
        instrument.tap("performSaveButton");
        walk.expectSoon("the name is shown", [&] { return bar.title() == kOwn; });
        instrument.pass(0.4);
        walk.expect("nothing is changed since", !bar.modificationNotice());
    });
    walk.step("changed", Walk::Effect::changes, [&] {
        QQuickItem& dial = instrument.item("preampDial");
        const QPoint knob = dial.mapToScene({dial.width() / 2, 40}).toPoint();
        const bool low = walk.controller().dials()->dial("preamp")->value() < 0.6f;
        instrument.drag(knob, knob + QPoint(0, low ? -120 : 120));
        walk.expect("the notice appears", bar.modificationNotice());
    });
    walk.step("picked again", Walk::Effect::changes, [&] {
        pick(walk, kOwn);
        walk.expect("the notice is gone", !bar.modificationNotice());
    });
    walk.show("asked before it is deleted", [&] {
        instrument.tap("deleteButton");
        walk.expectSoon("the alert comes", [&] { return instrument.has("alertOtherButton"); });
    });
    walk.step("deleted", Walk::Effect::sounds, [&] {
        instrument.tap("alertOtherButton");
        walk.expectSoon("it is gone", [&] { return bar.title() != kOwn; });
        walk.expect("the list knows it no longer",
                    walk.controller().hasPresetWithName(kOwn.toStdString()) == 0);
        instrument.pass(0.4);
    });
}
