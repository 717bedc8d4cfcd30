#include "Steps.h"

namespace {

constexpr double kPlateau = 88;  // points

/// Where in the editor a stage is dragged.
struct Stages {
    QQuickItem& editor;
    EnvelopeState& envelope;

    double points() const {
        return (editor.width() - kPlateau) /
               (envelope.attack() + envelope.decay() + envelope.releaseTime());
    }
    QPoint at(double x) const { return editor.mapToScene({x, editor.height() / 2}).toPoint(); }
    QPoint attack() const { return at(points() * envelope.attack() / 2); }
    QPoint decay() const { return at(points() * (envelope.attack() + envelope.decay() / 2)); }
    QPoint plateau(double across) const {
        return at(points() * (envelope.attack() + envelope.decay()) + kPlateau * across);
    }
    QPoint release() const { return at(editor.width() - points() * envelope.releaseTime() / 2); }
};

}  // namespace

void dragTheEnvelope(Walk& walk) {
    EnvelopeState& envelope = *walk.controller().envelope();
    const Stages stages{walk.instrument().item("adsrView"), envelope};
    const double width = stages.editor.width();
    const auto drag = [&](QPoint from, QPoint by) { walk.instrument().drag(from, from + by); };
    const auto changes = [&](const char* name, float (EnvelopeState::*value)() const, QPoint from,
                             QPoint by) {
        walk.step(std::string("the envelope's ") + name, Walk::Effect::changes, [&] {
            const float before = (envelope.*value)();
            drag(from, by);
            walk.expect(std::string(name) + " follows the finger",
                        std::abs((envelope.*value)() - before) > 0.05f);
        });
    };
    changes("release", &EnvelopeState::releaseTime, stages.at(width - 8), {int(-width / 2), 0});
    changes("plateau down", &EnvelopeState::sustain, stages.plateau(0.5), {0, 40});
    changes("decay", &EnvelopeState::decay, stages.decay(), {int(width * 0.3), 0});
    changes("attack", &EnvelopeState::attack, stages.at(1), {int(width * 0.3), 0});
    changes("plateau to the left", &EnvelopeState::decay, stages.plateau(0.25),
            {int(-width * 0.3), 0});
    changes("plateau's right half", &EnvelopeState::releaseTime, stages.plateau(0.75),
            {int(width * 0.4), 0});
    changes("plateau up", &EnvelopeState::sustain, stages.plateau(0.5), {0, -60});
}
