#include "Process.h"
#include "Steps.h"

void recordATake(Walk& walk, const std::string& tone) {
    InstrumentWindow& instrument = walk.instrument();
    const Process feeder({"jack-play", "-n", "feeder", "-u", tone});
    walk.step("a take of the microphone", Walk::Effect::changes, [&] {
        const QPoint microphone = instrument.placeOf(instrument.item("microphoneButton"));
        instrument.fingers().press(0, microphone);
        instrument.comesTo([] {
            return runProgram({"jack_connect", "feeder:out_1", "ombrix:in_1"}) == 0;
        });
        walk.expect("the take runs", instrument.has("takeDisplay"));
        instrument.pass(2);
        walk.expect("its meter moves", walk.controller().take()->level() > 0.01f);
        instrument.fingers().release(0);
        walk.expectSoon("the take has become the sound", [&] {
            return !walk.controller().take()->recording() && !walk.controller().alert()->shown();
        });
        walk.expect("the preset counts as changed",
                    walk.controller().presetBar()->modificationNotice());
    });
}

void recordAPerformance(Walk& walk) {
    InstrumentWindow& instrument = walk.instrument();
    QString file;
    QObject::connect(walk.controller().performance(), &PerformanceScreen::complete,
                     [&](const QString& path) { file = path; });
    walk.show("a performance", [&] {
        walk.controller().silence();
        instrument.tap("recordButton");
        instrument.pass(0.2);
        const double from = walk.ears().now();
        walk.playPhrase();
        const double to = walk.ears().now();
        walk.expect("it is recorded", walk.controller().performance()->recording());
        instrument.tap("recordButton");
        walk.expectSoon("the rows to send it come", [&] { return instrument.has("sendRow2"); });
        instrument.pass(0.4);
        walk.expectRecorded(file.toStdString(), from, to);
    });
    walk.step("after the performance", Walk::Effect::sounds, [&] {
        instrument.tap(instrument.placeOf(instrument.item("waveView"), 0.1, 0.5));
        instrument.pass(0.4);
        walk.expect("a touch elsewhere closes the rows", !instrument.has("sendRow0"));
    });
}
