#include <algorithm>

#include "Process.h"
#include "Steps.h"
#include "keyboard/ScrollingKeyboardView.h"

namespace {

constexpr int kLowestNote = 21;  // of the first key
constexpr double kSilenceSeconds = 0.5;

/// A key in the middle of what is seen, as its player sees it.
class SeenKey {
  public:
    explicit SeenKey(Walk& walk)
        : m_walk(walk),
          m_keyboard(dynamic_cast<ScrollingKeyboardView&>(walk.instrument().item("keyboard"))) {
        const auto& keys = m_keyboard.keyboardButtons();
        const QPointF place(m_keyboard.width() / 2, m_keyboard.height() * kAtHeight);
        m_index = int(std::ranges::find(keys, m_keyboard.keyAt(place)) - keys.begin());
        m_rest = look();
    }
    int note() const { return kLowestNote + m_index; }
    bool isLit() { return difference(look(), m_rest) > kSeen; }

  private:
    static constexpr double kAtHeight = 0.85;
    static constexpr int kSeen = 30;  // of 255

    /// Mean of a spot.
    QColor look() {
        const QPoint at = m_walk.instrument().placeOf(m_keyboard, 0.5, kAtHeight);
        const QImage spot = m_walk.instrument().picture().copy(at.x() - 4, at.y() - 4, 8, 8);
        return spot.scaled(1, 1, Qt::IgnoreAspectRatio, Qt::SmoothTransformation).pixelColor(0, 0);
    }
    static int difference(const QColor& one, const QColor& other) {
        return std::abs(one.red() - other.red()) + std::abs(one.green() - other.green()) +
               std::abs(one.blue() - other.blue());
    }

    Walk& m_walk;
    ScrollingKeyboardView& m_keyboard;
    int m_index = 0;
    QColor m_rest;
};

}  // namespace

void playFromAnotherProgram(Walk& walk) {
    InstrumentWindow& instrument = walk.instrument();
    SeenKey key(walk);
    // Presses the key twice a second, and holds it nearly all the time.
    auto player = std::make_unique<Process>(std::vector<std::string>{
        "jack_midiseq", "sequencer", "22050", "0", std::to_string(key.note()), "22000"});
    walk.hear("another program plays", [&] {
        walk.expectSoon("its key lights up", [&] { return key.isLit(); });
        walk.expectSoon("the settings know it", [&] {
            return walk.controller().midi()->sources().contains("sequencer:out");
        });
        instrument.pass(1);
    });
    walk.show("the other program was killed", [&] {
        walk.expectSoon("its key is held", [&] { return key.isLit(); });
        player->kill();
        walk.expectSoon("its key goes out", [&] { return !key.isLit(); });
        const auto& notes = walk.controller().instrument().notes().triggeredNoteUnits();
        walk.expect("no note is held",
                    std::ranges::all_of(notes, [](int unit) { return unit < 0; }));
        instrument.pass(6);  // what has been released fades
        const double from = walk.ears().now();
        instrument.pass(kSilenceSeconds);
        walk.expectSilence("the other program was killed", from, walk.ears().now());
    });
}
