#include "WaveTiles.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <string>

#include "Dice.h"
#include "DisplayClock.h"
#include "HeldSound.h"

namespace {

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr double kSoon = 0.00001;
constexpr int kLength = 1 << 22;  // frames

struct Canvas final : TileContext {
    double clipHeight() const override { return 200; }
    void drawGradient(const TileGradient&, double) override {}
    void setFillColour(const TileColour&) override {}
    void fillRect(double, double, double, double) override {}
};

/// A strip of tiles and a view that draws it when the test says so.
struct WaveTilesTest : testing::Test, WaveTilesDelegate {
    void tilesChanged() override { ++changes; }

    void show(std::int32_t start, std::int32_t stop, WaveUpdate update = WaveUpdate::refresh) {
        tiles->setViewFromI(start, stop, update);
    }
    /// The refresh that was asked for, up to where all is gathered.
    void gather() {
        clock.pass(kSoon);
        clock.until([&] { return named(WaveTileLayer::pendingRender) >= 3; });
    }
    void draw(const WaveTiles::Tile& tile) {
        Canvas canvas;
        tile->drawInContext(canvas);
    }
    void drawAll() {
        for (const auto& tile : tiles->layers())
            if (tile->needsDisplay())
                draw(tile);
        clock.pass(0);
    }
    void refreshed(std::int32_t start, std::int32_t stop) {
        show(start, stop);
        clock.pass(kSoon);
        clock.until([this] { return drawAll(), tiles->complete(); });
        clock.pass(0.6);
        clock.pass(0);
    }
    std::vector<std::string> names() const {
        std::vector<std::string> all;
        for (const auto& tile : tiles->layers())
            all.push_back(tile->name());
        return all;
    }
    long named(const char* name) const {
        return std::ranges::count(tiles->layers(), name,
                                  [](const auto& tile) { return tile->name(); });
    }
    std::vector<std::pair<int, int>> stretches() const {
        std::vector<std::pair<int, int>> all;
        for (const auto& tile : tiles->layers())
            all.emplace_back(tile->start(), tile->stop());
        return all;
    }
    /// The least of what shows at any of some points of the view, 0 for blank.
    double seen(double width) const {
        double least = 1;
        for (double x = 0.5; x < width; x += width / 32) {
            double through = 1;
            for (const auto& tile : tiles->layers()) {
                const TileFrame& frame = tile->frame();
                if (!tile->hidden() && frame.x <= x && x < frame.x + frame.width)
                    through *= 1 - tile->opacityAt(clock.now());
            }
            least = std::min(least, 1 - through);
        }
        return least;
    }

    DisplayClock& clock = DisplayClock::install();
    int changes = 0;
    std::shared_ptr<PieceSound> sound = PieceSound::mono(std::vector<float>(kLength, 0.5f));
    std::unique_ptr<WaveTiles> tiles = std::make_unique<WaveTiles>(*this);
};

/// The same with a view of 1280 points and the sound.
struct ShownTilesTest : WaveTilesTest {
    ShownTilesTest() {
        tiles->setBounds(1280, 200);
        tiles->setWave(sound);
    }
};

}  // namespace

TEST_F(WaveTilesTest, waitsForSoundWidthAndFrames) {
    show(0, 128000);
    clock.pass(kSoon);
    EXPECT_THAT(tiles->layers(), IsEmpty());
    tiles->setWave(sound);
    clock.pass(kSoon);
    tiles->setBounds(1280, 200);
    EXPECT_FALSE(tiles->complete());
    const int before = changes;
    gather();
    EXPECT_GT(changes, before);
    EXPECT_THAT(stretches(), ElementsAre(std::pair(0, 102400), std::pair(-102400, 0),
                                         std::pair(102400, 204800)));
    EXPECT_THAT(names(), Each("Pending Render"));
    const auto& frame = tiles->layers()[1]->frame();
    EXPECT_EQ(frame, (TileFrame{-1024, 0, 1024, 200}));
    EXPECT_FALSE(tiles->animating());
    drawAll();
    EXPECT_TRUE(tiles->complete());
    show(5, 5);  // no frames, nothing to see
    clock.pass(kSoon);
    EXPECT_THAT(tiles->layers(), IsEmpty());
}

TEST_F(ShownTilesTest, newTilesFadeInAndOldOnesStayUntilAllAreIn) {
    show(0, 128000);
    gather();
    drawAll();
    EXPECT_THAT(names(), Each("Normal"));
    EXPECT_TRUE(tiles->animating());
    EXPECT_EQ(seen(1280), 0);
    clock.pass(0.25);
    EXPECT_NEAR(seen(1280), 0.5, 1e-6);
    clock.pass(0.25);
    EXPECT_EQ(seen(1280), 1);
    EXPECT_FALSE(tiles->animating());

    show(64000, 128000);
    EXPECT_EQ(tiles->layers()[0]->frame(), (TileFrame{-1280, 0, 2048, 200}));
    EXPECT_THAT(names(), Each("Normal"));
    clock.pass(kSoon);
    EXPECT_EQ(named(WaveTileLayer::outOfDate), 3);
    clock.until([&] { return tiles->layers().size() == 6; });
    const auto all = tiles->layers();
    for (std::size_t i = 3; i < 5; ++i) {
        draw(all[i]);
        clock.pass(0.1);
        EXPECT_EQ(named(WaveTileLayer::outOfDate), 3);
    }
    draw(all[5]);
    clock.pass(0);
    EXPECT_EQ(named(WaveTileLayer::removingOutOfDate), 3);
    EXPECT_EQ(named(WaveTileLayer::normal), 3);
    clock.pass(0.59);
    EXPECT_THAT(tiles->layers(), SizeIs(6));
    clock.pass(0.02);
    EXPECT_THAT(names(), ElementsAre("Normal", "Normal", "Normal"));
    EXPECT_EQ(all[0]->opacityAt(clock.now()), 0);
    EXPECT_TRUE(all[0]->hidden());
    EXPECT_EQ(all[0]->wave(), nullptr);  // a spare tile keeps no sound

    tiles->setReduceMotion(true);
    show(64000, 66000);
    gather();
    drawAll();
    EXPECT_FALSE(tiles->animating());
    EXPECT_EQ(seen(1280), 1);
    clock.pass(0);
    EXPECT_THAT(tiles->layers(), SizeIs(3));
    EXPECT_LE(WaveTileLayer::liveTiles(), 3 + 3 + 3);  // shown, spare, and those in `all`
}

TEST_F(ShownTilesTest, aTileThatIsNeverDrawnIsGivenUpAndReplaced) {
    show(0, 128000);
    gather();
    const auto all = tiles->layers();
    draw(all[0]);
    draw(all[1]);
    clock.pass(2.99);
    EXPECT_STREQ(all[2]->name(), "Pending Render");
    draw(all[0]);
    clock.pass(0);
    EXPECT_STREQ(all[2]->name(), "Pending Render");
    draw(all[0]);
    clock.pass(0.02);
    EXPECT_STREQ(all[2]->name(), "Removing [ood]");
    gather();
    drawAll();
    clock.pass(0.6);
    clock.pass(0);
    EXPECT_THAT(names(), ElementsAre("Normal", "Normal", "Normal"));
    EXPECT_EQ(seen(1280), 1);

    // A window that was not drawn for long comes back: nothing is blank.
    show(0, 64000);
    gather();
    clock.pass(60);
    drawAll();
    EXPECT_EQ(named(WaveTileLayer::normal), 3);
    EXPECT_EQ(named(WaveTileLayer::removingOutOfDate), 3);
}

TEST_F(ShownTilesTest, tilesThatScrollFarOutComeInOnTheOtherSide) {
    refreshed(0, 128000);
    const auto scrollTo = [&](int start) { show(start, start + 128000, WaveUpdate::scroll); };
    scrollTo(51200);  // the left tile ends at -512
    clock.pass(kSoon);
    EXPECT_THAT(tiles->layers(), SizeIs(3));
    scrollTo(51201);
    EXPECT_THAT(stretches(), ElementsAre(std::pair(0, 102400), std::pair(102400, 204800)));
    clock.until([&] { return tiles->layers().size() == 3; });
    EXPECT_EQ(stretches()[2], std::pair(204800, 307200));
    EXPECT_NEAR(tiles->layers()[2]->frame().x, 1536, 0.02);
    EXPECT_THAT(names(), ElementsAre("Normal", "Normal", "Pending Render"));
    drawAll();
    scrollTo(51200);  // the right tile begins at 1536
    EXPECT_THAT(names(), Each("Normal"));
    scrollTo(51199);
    EXPECT_THAT(tiles->layers(), SizeIs(2));
    clock.until([&] { return tiles->layers().size() == 3; });
    EXPECT_EQ(stretches()[2], std::pair(-102400, 0));
    drawAll();
    EXPECT_TRUE(tiles->complete());

    scrollTo(2000000);  // further than one tile can make up for
    EXPECT_FALSE(tiles->complete());
    clock.pass(kSoon);
    clock.until([&] { return named(WaveTileLayer::pendingRender) >= 3; });
    drawAll();
    EXPECT_TRUE(tiles->complete());
}

// Scrolling never shows a point without a tile below it, as long as a step is no longer than what
// the strip reaches beyond the view.
TEST_F(WaveTilesTest, aViewOfAnyWidthIsCovered) {
    tiles->setWave(sound);
    Dice dice(7);
    for (const double width : {1., 320., 1280., 1536., 1537., 2560., 2561., 5000.}) {
        for (const int shown : {16, 17, 1000, 100000}) {
            tiles->setBounds(width, 200);
            refreshed(1000000, 1000000 + shown);
            const auto count = tiles->layers().size();
            const TileFrame frame = tiles->layers()[0]->frame();
            const int span = tiles->layers()[0]->stop() - tiles->layers()[0]->start();
            EXPECT_EQ(span, std::max(1, int(shown * 1024. / width)));
            EXPECT_TRUE(count == 3 || width > 1536 || frame.width < 1000);
            const double spare = frame.width * double(count - 1) - 512 - width;
            EXPECT_GE(spare, width > 1536 ? 256 : -64);
            int start = 1000000;
            for (int step = 0; step < 100; ++step) {
                const int moved = (step < 50 ? span / 4 : -span / 4) + dice.below(span) - span / 2;
                start = std::clamp(start + moved, -1000000000, 1000000000);
                show(start, start + shown, WaveUpdate::scroll);
                const double points = moved * width / shown;
                if (points <= spare && points >= 1536 - 2 * frame.width) {
                    ASSERT_EQ(seen(width), 1) << width << ", " << shown << ", step " << step;
                }
                clock.until([&] { return tiles->layers().size() == count; });
                drawAll();
                ASSERT_TRUE(tiles->complete()) << width << ", " << shown << ", step " << step;
                clock.pass(0.5);
                ASSERT_EQ(seen(width), 1) << width << ", " << shown << ", step " << step;
            }
        }
    }
}

TEST_F(ShownTilesTest, aRefreshCancelsTheGatherUnderWayOnce) {
    const auto life = std::make_shared<HeldSound::Life>();
    tiles->setWave(std::make_shared<HeldSound>(life));
    show(0, 64000);
    clock.pass(kSoon);
    life->awaitReaders(1);
    show(0, 32000);
    clock.pass(kSoon);
    show(0, 16000);  // waits, so that something is ever seen
    clock.pass(kSoon);
    EXPECT_THAT(tiles->layers(), IsEmpty());
    EXPECT_EQ(WaveTileLayer::liveTiles(), 6);
    life->isHeld = false;
    clock.until([&] { return tiles->layers().size() == 6; });
    EXPECT_EQ(stretches()[0], std::pair(0, 25600));
    EXPECT_EQ(stretches()[3], std::pair(0, 12800));
    EXPECT_EQ(WaveTileLayer::liveTiles(), 6);  // those that were cancelled are in use again
    drawAll();
    EXPECT_EQ(named(WaveTileLayer::removingOutOfDate), 3);
    EXPECT_TRUE(tiles->complete());
}

TEST_F(ShownTilesTest, aSoundIsReplacedFreedAndAbandonedWhileItIsGathered) {
    const auto main = std::this_thread::get_id();
    const auto gone = [&](const HeldSound::Life& life) {
        return life.freedOn.load() != std::thread::id();
    };
    for (int round = 0; round < 60; ++round) {
        const auto life = std::make_shared<HeldSound::Life>();
        if (!tiles) {
            tiles = std::make_unique<WaveTiles>(*this);
            tiles->setBounds(1280, 200);
            tiles->setWave(sound);
        }
        refreshed(0, 128000);
        tiles->setWave(std::make_shared<HeldSound>(life));
        clock.pass(kSoon);
        life->awaitReaders(1);
        EXPECT_EQ(seen(1280), 1);
        if (round % 2)
            life->isHeld = false;
        if (round % 3 == 0) {
            tiles->setWave(nullptr);
            EXPECT_THAT(tiles->layers(), IsEmpty());
        } else if (round % 3 == 1) {
            tiles->setWave(sound);
            EXPECT_EQ(seen(1280), 1);
        } else {
            tiles.reset();
        }
        life->isHeld = false;
        clock.until([&] { return gone(*life); });
        ASSERT_EQ(life->freedOn, main);
        if (round % 3 == 0) {
            tiles->setWave(sound);
            gather();
        }
    }
    tiles.reset();
    clock.until([] { return WaveTileLayer::liveTiles() == 0; });
}

// A refresh at every frame and more often: the picture stays, the newest range comes in soon, and
// tiles do not pile up.
TEST_F(ShownTilesTest, storms) {
    Dice dice(11);
    refreshed(kLength / 2 - 80000, kLength / 2 + 80000);
    const double middle = kLength / 2;
    double shown = 160000, width = 1280, height = 200;
    int most = 0;
    for (int frame = 0; frame < 2000; ++frame) {
        for (int i = dice.below(4); i > 0; --i) {
            // No further out than what is shown already reaches.
            shown = std::clamp(shown * (0.85 + dice.below(31) / 100.), 100000., 160000.);
            if (frame % 3 == 0)
                tiles->setBounds(width = 800 + dice.below(700), height = 150 + dice.below(50));
            show(int(middle - shown / 2), int(middle - shown / 2) + int(shown));
            clock.pass(kSoon);
            if (dice.below(2))
                std::this_thread::yield();
            clock.pass(0);
        }
        if (dice.below(2))
            clock.until(
                [&] { return named(WaveTileLayer::pendingRender) > 0 || tiles->complete(); });
        if (frame % 100 > 30)  // now and then the window is hidden
            drawAll();
        ASSERT_GT(seen(width), 0.99) << "frame " << frame;
        most = std::max(most, WaveTileLayer::liveTiles());
        clock.pass(1 / 60.);
    }
    EXPECT_LE(most, 4 * 3 + 2 * 3 + 3);
    clock.pass(kSoon);
    clock.until([this] {
        drawAll();
        clock.pass(kSoon);
        return tiles->complete();
    });
    clock.pass(0.7);
    clock.pass(0);
    EXPECT_THAT(names(), ElementsAre("Normal", "Normal", "Normal"));
    tiles->didReceiveMemoryWarning();
    EXPECT_EQ(WaveTileLayer::liveTiles(), 3);
}
