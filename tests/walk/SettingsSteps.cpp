#include "Steps.h"
#include "audiounits/devices/AudioDevices.h"

namespace {

constexpr const char* kList = "settingsList";

void tapRow(Walk& walk, const QString& row) {
    walk.scrollTo(kList, row);
    walk.instrument().tap(row);
    walk.instrument().pass(0.3);
}

/// Opens the rows of a choice and picks the one of that name.
void choose(Walk& walk, const QString& rows, const QVariantList& options, const QString& name) {
    tapRow(walk, rows + "Row");
    for (qsizetype i = 0; i < options.size(); ++i) {
        if (options[i].value<AudioOption>().name == name)
            tapRow(walk, rows + QString::number(i));
    }
    tapRow(walk, rows + "Row");
}

bool playsThrough(const std::string& device) {
    return AudioDevices::chosen() == device &&
           AudioDevices::current()->info().name.starts_with(device);
}

void changeTheDevice(Walk& walk) {
    AudioSetup& audio = *walk.controller().audio();
    walk.expectSoon("devices have been looked for", [&] { return !audio.looking(); });
    choose(walk, "audioDevice", audio.devices(), "clock");
    walk.expectSoon("it goes on without a device", [] { return playsThrough("clock"); });
    choose(walk, "audioBuffer", audio.bufferSizes(), "512");
    walk.expectSoon("the buffer is as wanted",
                    [] { return AudioDevices::preferredPeriod() == 512; });
    choose(walk, "audioDevice", audio.devices(), "jack");
    walk.expectSoon("it plays through JACK again", [] { return playsThrough("jack"); });
}

}  // namespace

void changeEverySetting(Walk& walk) {
    InstrumentWindow& instrument = walk.instrument();
    SettingsController& settings = *walk.controller().settings();
    walk.step("other settings of the keys", Walk::Effect::changes, [&] {
        instrument.tap("settingsButton");
        instrument.pass(0.4);
        const bool labels = settings.showLabels();
        const bool gain = settings.automaticGain();
        tapRow(walk, "keySize1");
        walk.expect("the keys are wide", settings.largeKeys());
        tapRow(walk, "labl");
        walk.expect("the labels change", settings.showLabels() != labels);
        tapRow(walk, "gain");
        walk.expect("the gain control changes", settings.automaticGain() != gain);
    });
    walk.show("another device and back", [&] { changeTheDevice(walk); });
    walk.step("after the settings", Walk::Effect::sounds, [&] {
        tapRow(walk, "keySize0");
        tapRow(walk, "gain");
        instrument.tap("settingsDoneButton");
        walk.expectSoon("the settings are closed", [&] { return !instrument.has(kList); });
    });
}
