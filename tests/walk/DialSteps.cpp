#include <cmath>

#include "Steps.h"

namespace {

constexpr double kPositionOfPoint = 0.005;  // how far a dial turns for a point of a drag

struct Turn {
    const char* dial;
    float position;  // of its sweep
    Walk::Effect effect;
};

constexpr auto kChanges = Walk::Effect::changes;
constexpr auto kSounds = Walk::Effect::sounds;

/// In an order in which each matters: depths before frequencies, a level that is held before what
/// leads to it, releases without an echo, a filter half closed before what it rings with, a delay
/// before what it repeats.
constexpr Turn kTurns[] = {
    {"grainSpeed", 0.9f, kChanges},
    {"grainSize", 0.1f, kChanges},
    {"fmFrequency", 0.6f, kChanges},
    {"fmFrequency", 0, kChanges},
    {"preamp", 0.1f, kChanges},
    {"preamp", 0.4f, kChanges},
    {"echoDelay", 0, kSounds},
    {"echoFeedback", 0, kSounds},
    {"adsrSustain", 0.2f, kSounds},
    {"adsrDecay", 0.05f, kChanges},
    {"adsrSustain", 1, kChanges},
    {"adsrRelease", 0.9f, kSounds},
    {"adsrRelease", 0.05f, kChanges},
    {"adsrAttack", 0.2f, kChanges},
    {"adsrAttack", 0, kChanges},
    {"filterCutoff", 0.8f, kChanges},
    {"filterCutoff", 0.1f, kChanges},
    {"ringModDepth", 1, kChanges},
    {"ringModFrequency", 0.9f, kChanges},
    {"ringModDepth", 0, kChanges},
    {"distortionStrength", 0.9f, kChanges},
    {"filterCutoff", 0.6f, kChanges},
    {"filterResonance", 0.9f, kChanges},
    {"filterResonanceBass", 0.1f, kChanges},
    {"filterResonance", 0, kChanges},
    {"echoFeedback", 0.1f, kSounds},
    {"echoDelay", 0.05f, kChanges},
    {"echoFeedback", 0.9f, kChanges},
};

DialState& stateOf(Walk& walk, const std::string& dial) {
    return *walk.controller().dials()->dial(QString::fromStdString(dial));
}

float positionOf(const DialState& state) {
    return (state.value() - state.minValue()) / (state.maxValue() - state.minValue());
}

QPoint knobOf(Walk& walk, const std::string& dial) {
    QQuickItem& column = walk.instrument().item(QString::fromStdString(dial + "Dial"));
    return column.mapToScene({column.width() / 2, 40}).toPoint();
}

void turn(Walk& walk, const std::string& dial, float position) {
    const QPoint knob = knobOf(walk, dial);
    const double points = (position - positionOf(stateOf(walk, dial))) / kPositionOfPoint;
    const double past = position == 0 || position == 1 ? std::copysign(10, points) : 0;
    walk.instrument().drag(knob, knob - QPoint(0, int(std::round(points + past))));
    walk.expect(dial + " goes where it is dragged",
                std::abs(positionOf(stateOf(walk, dial)) - position) < 0.01f);
}

void doubleTap(Walk& walk, const std::string& dial) {
    for (int i = 0; i < 2; ++i)
        walk.instrument().tap(knobOf(walk, dial));
}

}  // namespace

void turnEveryDial(Walk& walk) {
    walk.step("the same again", Walk::Effect::stays, [] {});
    for (const Turn& row : kTurns) {
        const std::string dial = row.dial;
        walk.step(dial + " to " + std::to_string(int(std::round(row.position * 100))) + " %",
                  row.effect, [&] { turn(walk, dial, row.position); });
    }
    walk.step("a double tap makes speed follow the key", kChanges, [&] {
        doubleTap(walk, "grainSpeed");
        walk.expect("the speed dial shows it", !stateOf(walk, "grainSpeed").glyph().isEmpty());
    });
    walk.step("another one makes it free", kChanges, [&] {
        doubleTap(walk, "grainSpeed");
        walk.expect("the speed dial shows it", stateOf(walk, "grainSpeed").glyph().isEmpty());
    });
    walk.step("a double tap gives the preset's echo back", kChanges, [&] {
        doubleTap(walk, "echoDelay");
        doubleTap(walk, "echoFeedback");
        walk.expect("the dial shows it", positionOf(stateOf(walk, "echoDelay")) > 0.1f);
    });
}
