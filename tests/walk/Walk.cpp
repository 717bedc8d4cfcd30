#include "Walk.h"

#include <QTest>
#include <cstdio>
#include <optional>

#include "Hearing.h"
#include "Recording.h"

namespace {

constexpr QSize kSize{1280, 800};    // points
constexpr double kHeld = 0.6;        // seconds that the phrase's keys are held
constexpr double kFading = 0.6;      // and listened to afterwards
constexpr double kDifference = 1.5;  // decibels from which a phrase counts as another one
constexpr double kAlike =
    5;  // up to which it counts as the same: fingers are late on a busy machine

bool isRight(Walk::Effect effect, const Heard& heard, double difference) {
    switch (effect) {
        case Walk::Effect::sounds:
            return !heard.silent();
        case Walk::Effect::changes:
            return !heard.silent() && difference >= kDifference;
        case Walk::Effect::stays:
            return !heard.silent() && difference < kAlike;
    }
    return false;
}

}  // namespace

void Walk::open() {
    m_instrument = std::make_unique<InstrumentWindow>(kSize);
    m_instrument->window().requestActivate();
    expectSoon("the window has the focus", [this] { return m_instrument->window().isActive(); });
    expectSoon("the sound is there", [this] { return !controller().arriving(); });
    m_instrument->pass(0.3);
}

void Walk::listenAgain() {
    expect("the instrument plays through JACK", m_ears.connect("ombrix:out_1"));
}

void Walk::playPhrase() {
    QQuickItem& keyboard = m_instrument->item("keyboard");
    Fingers& fingers = m_instrument->fingers();
    fingers.press(0, m_instrument->placeOf(keyboard, 0.76, 0.85));
    fingers.press(1, m_instrument->placeOf(keyboard, 0.84, 0.85));
    m_instrument->pass(kHeld);
    fingers.release(0);
    fingers.release(1);
    m_instrument->pass(kFading);
}

void Walk::type(const QString& text) {
    for (const QChar letter : text)
        QTest::sendKeyEvent(QTest::Click, &m_instrument->window(), Qt::Key_unknown, letter, {});
    m_instrument->pass(0.2);
}

void Walk::scrollTo(const QString& list, const QString& item) {
    QQuickItem& frame = m_instrument->item(list);
    const QRectF place = frame.mapRectToScene(frame.boundingRect());
    for (int i = 0; i < 20; ++i) {
        QQuickItem& wanted = m_instrument->item(item);
        const QRectF now = wanted.mapRectToScene(wanted.boundingRect());
        if (place.contains(now))
            return;
        const QPoint middle = place.center().toPoint();
        const double most = place.height() * 0.4;
        const double way = std::clamp(place.center().y() - now.center().y(), -most, most);
        Fingers& fingers = m_instrument->fingers();
        fingers.press(0, middle);
        for (int move = 1; move <= 8; ++move) {
            fingers.move(0, middle + QPoint(0, int(way * move / 8)));
            m_instrument->pass(0.016);
        }
        m_instrument->pass(0.15);  // the list stands still when it is let go
        fingers.release(0);
        m_instrument->pass(0.3);
    }
}

void Walk::begin(const std::string& name, const std::function<void()>& action) {
    std::printf("%s\n", name.c_str());
    std::fflush(stdout);
    action();
    m_instrument->pass(0.3);
    picture(name);
}

void Walk::show(const std::string& name, const std::function<void()>& action) {
    begin(name, action);
}

void Walk::step(const std::string& name, Effect effect, const std::function<void()>& action) {
    begin(name, action);
    listenAgain();
    controller().silence();
    m_instrument->pass(0.2);
    const double from = m_ears.now();
    playPhrase();
    m_phrases.push_back({name, effect, from, m_ears.now()});
}

void Walk::hear(const std::string& name, const std::function<void()>& action) {
    listenAgain();
    controller().silence();
    m_instrument->pass(0.2);
    const double from = m_ears.now();
    begin(name, action);
    m_listened.push_back({name, from, m_ears.now(), false});
}

void Walk::picture(const std::string& name) {
    char file[256];
    std::snprintf(file, sizeof file, "%s/%02d %s.png", m_folder.c_str(), ++m_pictures,
                  name.c_str());
    m_instrument->picture().save(file);
}

void Walk::expect(const std::string& what, bool truth) {
    if (truth)
        return;
    std::printf("  not so: %s\n", what.c_str());
    m_failures.push_back(what);
}

void Walk::expectSoon(const std::string& what, const std::function<bool()>& truth) {
    expect(what, m_instrument->comesTo(truth));
}

void Walk::expectRecorded(const std::string& file, double from, double to) {
    m_recorded.push_back({file, from, to});
}

bool Walk::tellRecorded(const Recorded& recorded) const {
    const Heard written(readRecording(recorded.file).frames);
    const double difference = written.differenceTo(Heard(m_ears.heard(recorded.from, recorded.to)));
    const bool right = !written.silent() && difference < kAlike;
    std::printf("%-44s %5.1f dB %8.1f dB%s\n", "the recorded performance", written.level(),
                difference, right ? "" : "  <- not what was played");
    return right;
}

bool Walk::tell() const {
    bool good = m_failures.empty();
    std::optional<Heard> before;
    std::printf("\n%-44s %8s %11s\n", "step", "level", "difference");
    for (const Phrase& phrase : m_phrases) {
        const Heard heard(m_ears.heard(phrase.from, phrase.to));
        const double difference = before ? heard.differenceTo(*before) : 0;
        const bool right = isRight(phrase.effect, heard, difference);
        std::printf("%-44s %5.1f dB %8.1f dB%s\n", phrase.name.c_str(), heard.level(), difference,
                    right                            ? ""
                    : phrase.effect == Effect::stays ? "  <- another one"
                                                     : "  <- not heard");
        good = good && right;
        before = heard;
    }
    for (const Listened& listened : m_listened) {
        const Heard heard(m_ears.heard(listened.from, listened.to));
        std::printf("%-44s %5.1f dB%s\n", listened.name.c_str(), heard.level(),
                    heard.silent() == listened.silent ? ""
                    : listened.silent                 ? "  <- heard"
                                                      : "  <- not heard");
        good = good && heard.silent() == listened.silent;
    }
    for (const Recorded& recorded : m_recorded)
        good = tellRecorded(recorded) && good;
    for (const std::string& failure : m_failures)
        std::printf("not so: %s\n", failure.c_str());
    return good;
}
