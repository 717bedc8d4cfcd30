#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <filesystem>

#include "Process.h"
#include "Steps.h"
#include "keyboard/ScrollingKeyboardView.h"
#include "midi/MidiNetworkSession.h"

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

/// The key is heard and lit while the player presses it, and goes out when the player ends.
void playAndEnd(Walk& walk, const std::string& name, const QString& source, SeenKey& key,
                Process& player, int signal) {
    InstrumentWindow& instrument = walk.instrument();
    walk.hear(name + " plays", [&] {
        walk.expectSoon("its key lights up", [&] { return key.isLit(); });
        walk.expectSoon("the settings know it",
                        [&] { return walk.controller().midi()->sources().contains(source); });
        instrument.pass(1);
    });
    walk.show(name + " has ended", [&] {
        walk.expectSoon("its key is held", [&] { return key.isLit(); });
        player.signal(signal);
        walk.expectSoon("its key goes out", [&] { return !key.isLit(); });
        const auto& notes = walk.controller().instrument().notes().triggeredNoteUnits();
        walk.expect("no note is held",
                    std::ranges::all_of(notes, [](int unit) { return unit < 0; }));
        instrument.pass(6);  // what has been released fades
        const double from = walk.ears().now();
        instrument.pass(kSilenceSeconds);
        walk.expectSilence(name + " has ended", from, walk.ears().now());
    });
}

}  // namespace

void playFromAnotherProgram(Walk& walk) {
    SeenKey key(walk);
    // Presses the key twice a second, and holds it nearly all the time.
    Process player(
        {"jack_midiseq", "sequencer", "22050", "0", std::to_string(key.note()), "22000"});
    // Not killed: the server, which is patient here, would wait for it at the next connection.
    playAndEnd(walk, "another program", "sequencer:out", key, player, SIGTERM);
}

void playOverTheNetwork(Walk& walk) {
    if (!std::filesystem::exists(OMBRIX_PEERS "/node_modules/rtpmidi")) {
        std::printf("nobody plays over the network: ./test installs who would, if there is npm\n");
        return;
    }
    setenv("NODE_PATH", OMBRIX_PEERS "/node_modules", 1);
    SeenKey key(walk);
    Process player({"node", OMBRIX_PEER_SCRIPT, "connect",
                    std::to_string(MIDINetworkSession::defaultSession().port()),
                    std::to_string(key.note())});
    playAndEnd(walk, "somebody else's session", "foreign", key, player, SIGKILL);
}
