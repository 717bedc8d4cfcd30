#include "Walk.h"

#include <cstdio>
#include <optional>

#include "Hearing.h"

namespace {
constexpr double kHeld = 0.5;        // seconds that the phrase's keys are held
constexpr double kFading = 0.5;      // and listened to afterwards
constexpr double kDifference = 1.5;  // decibels from which a phrase counts as another one
}  // namespace

void Walk::playPhrase() {
    QQuickItem& keyboard = m_instrument.item("keyboard");
    Fingers& fingers = m_instrument.fingers();
    fingers.press(0, m_instrument.placeOf(keyboard, 0.45, 0.85));
    fingers.press(1, m_instrument.placeOf(keyboard, 0.53, 0.85));
    m_instrument.pass(kHeld);
    fingers.release(0);
    fingers.release(1);
    m_instrument.pass(kFading);
}

void Walk::step(const std::string& name, Effect effect, const std::function<void()>& action) {
    std::printf("%s\n", name.c_str());
    std::fflush(stdout);
    action();
    m_instrument.pass(0.2);
    picture(name);
    m_instrument.controller().silence();
    m_instrument.pass(0.2);
    const double from = m_ears.now();
    playPhrase();
    m_phrases.push_back({name, effect, from, m_ears.now()});
}

void Walk::picture(const std::string& name) {
    char file[256];
    std::snprintf(file, sizeof file, "%s/%02d %s.png", m_folder.c_str(), ++m_pictures,
                  name.c_str());
    m_instrument.picture().save(file);
}

void Walk::expect(const std::string& what, bool truth) {
    if (!truth)
        m_failures.push_back(what);
}

bool Walk::tell() const {
    bool good = m_failures.empty();
    std::optional<Heard> before;
    std::printf("\n%-34s %8s %10s\n", "step", "level", "difference");
    for (const Phrase& phrase : m_phrases) {
        const Heard heard(m_ears.heard(phrase.from, phrase.to));
        const double difference = before ? heard.differenceTo(*before) : 0;
        const bool right =
            phrase.effect == Effect::anything ||
            (!heard.silent() && (phrase.effect == Effect::sounds || difference >= kDifference));
        std::printf("%-34s %5.1f dB %7.1f dB%s\n", phrase.name.c_str(), heard.level(), difference,
                    right ? "" : "  <- not heard");
        good = good && right;
        before = heard;
    }
    for (const std::string& failure : m_failures)
        std::printf("not so: %s\n", failure.c_str());
    return good;
}
