#include <cmath>

#include "SoundFiles.h"
#include "Steps.h"
#include "wave/WaveRangeView2.h"

namespace {

constexpr std::size_t kSeconds = 20 * 60;

/// Tones that climb from minute to minute and swell each second, so that places sound different.
std::string makeLongSound(const std::string& folder) {
    std::vector<std::int16_t> frames(kSeconds * 44100);
    double turns = 0;
    for (std::size_t i = 0; i < frames.size(); ++i) {
        const double seconds = double(i) / 44100;
        turns += (110 + 0.8 * seconds) / 44100;
        const double swell = 0.6 - 0.4 * std::cos(6.2832 * seconds);
        frames[i] = std::int16_t(30000 * swell * (2 * (turns - std::floor(turns)) - 1));
    }
    const std::string file = folder + "/long.wav";
    SoundFiles::write(file, SoundFiles::wav({}, SoundFiles::bytes(frames)));
    return file;
}

/// Someone's fingers on a wave view.
class Explorer {
  public:
    Explorer(Walk& walk, const QString& view, const QString& range)
        : m_walk(walk), m_view(find<WaveView2>(view)), m_range(find<WaveRangeView2>(range)) {}

    WaveView2& view() { return m_view; }
    int shown() const { return m_view.viewStop() - m_view.viewStart(); }
    QPoint at(double across, double down = 0.4) {
        return m_walk.instrument().placeOf(m_view, across, down);
    }
    bool soonComplete() {
        return m_walk.instrument().comesTo([this] { return m_view.tiles().complete(); });
    }

    /// Two fingers go apart about a place, again and again, until so few frames are seen.
    void pinchTo(int frames, double about) {
        Fingers& fingers = m_walk.instrument().fingers();
        for (int pinch = 0; pinch < 40 && shown() > frames; ++pinch) {
            fingers.press(0, at(about) - QPoint(30, 0));
            fingers.press(1, at(about) + QPoint(30, 0));
            for (int gap = 50; gap <= 230; gap += 20) {
                fingers.move({{0, at(about) - QPoint(gap, 0)}, {1, at(about) + QPoint(gap, 0)}});
                m_walk.instrument().pass(0.016);
            }
            fingers.release(0);
            fingers.release(1);
        }
        m_walk.instrument().pass(0.7);
    }

    /// Both edges of the selection are dragged to these places.
    void select(double from, double to) {
        m_walk.controller().selection()->selectAll();
        m_walk.instrument().pass(0.1);
        drag(*m_range.startHandle(), from);
        drag(*m_range.stopHandle(), to);
    }

  private:
    template <typename Item>
    Item& find(const QString& name) {
        return dynamic_cast<Item&>(m_walk.instrument().item(name));
    }
    void drag(QQuickItem& handle, double across) {
        const QPoint from = m_walk.instrument().placeOf(handle);
        m_walk.instrument().drag(from, {at(across).x(), from.y()}, 20);
    }

    Walk& m_walk;
    WaveView2& m_view;
    WaveRangeView2& m_range;
};

void lookAround(Walk& walk, Explorer& explorer) {
    walk.show("zoomed to samples", [&] {
        explorer.pinchTo(60, 0.5);
        walk.expect("single samples are seen", explorer.shown() <= 60);
        walk.expect("the picture is whole", explorer.soonComplete());
    });
    walk.show("scrolled", [&] {
        const int before = explorer.view().viewStart();
        walk.instrument().drag(explorer.at(0.8), explorer.at(0.2));
        walk.instrument().pass(3);  // it goes on by itself for a while
        walk.expect("later samples are seen", explorer.view().viewStart() > before);
    });
    walk.show("all of it again", [&] {
        walk.instrument().tap(explorer.at(0.5));
        walk.instrument().tap(explorer.at(0.5));
        walk.expect("a double tap shows all",
                    explorer.shown() == walk.controller().selection()->length());
        walk.expect("the picture is whole", explorer.soonComplete());
        walk.controller().hearing()->stop();
    });
}

void listen(Walk& walk, Explorer& explorer) {
    WaveHearing& hearing = *walk.controller().hearing();
    walk.hear("played from a tap", [&] {
        walk.instrument().tap(explorer.at(0.7));
        walk.expectSoon("it plays", [&] { return hearing.playing(); });
        walk.instrument().pass(1);
    });
    walk.show("stopped", [&] { hearing.stop(); });
    walk.hear("scrubbed", [&] {
        Fingers& fingers = walk.instrument().fingers();
        fingers.press(0, explorer.at(0.3));
        walk.instrument().pass(0.6);
        for (int i = 1; i <= 40; ++i) {
            fingers.move(0, explorer.at(0.3 + 0.005 * i));
            walk.instrument().pass(0.025);
        }
        fingers.release(0);
    });
}

void edit(Walk& walk) {
    const WaveSelection& selection = *walk.controller().selection();
    const int whole = selection.length();
    const auto settled = [&] { return !walk.controller().editor()->working(); };
    walk.show("the sheet to edit it", [&] { walk.instrument().tap("editButton"); });
    Explorer explorer(walk, "editView", "editRange");
    walk.step("cropped", Walk::Effect::changes, [&] {
        explorer.select(0.45, 0.55);
        const int wanted = selection.stop() - selection.start();
        walk.instrument().tap("cropButton");
        walk.expectSoon("the voices have it", settled);
        walk.expect("what was selected is left", selection.length() == wanted);
    });
    walk.step("reversed", Walk::Effect::sounds, [&] {
        walk.instrument().tap("reverseButton");
        walk.expectSoon("the voices have it", settled);
    });
    walk.step("undone", Walk::Effect::changes, [&] {
        walk.instrument().tap("undoButton");
        walk.expectSoon("the voices have it", settled);
        walk.instrument().tap("undoButton");
        walk.expectSoon("the voices have it", settled);
        walk.expect("the whole is back", selection.length() == whole);
    });
    walk.hear("what is selected, played", [&] {
        explorer.select(0.2, 0.21);
        walk.instrument().tap("playEditButton");
        walk.instrument().pass(1);
    });
    walk.show("the sheet is closed", [&] { walk.instrument().tap("editDoneButton"); });
}

}  // namespace

void exploreAWave(Walk& walk, const std::string& folder) {
    const std::string file = makeLongSound(folder);
    walk.step("a sound of twenty minutes dropped", Walk::Effect::changes, [&] {
        walk.instrument().drop(QString::fromStdString(file),
                               walk.instrument().placeOf(walk.instrument().item("waveView")));
        walk.expectSoon("it has become the sound",
                        [&] { return walk.controller().wave()->name() == "long"; });
    });
    Explorer explorer(walk, "waveView", "waveRange");
    lookAround(walk, explorer);
    listen(walk, explorer);
    edit(walk);
}
