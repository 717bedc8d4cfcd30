#include "WaveTileLayer.h"

#include <gmock/gmock.h>
#include <sys/mman.h>

#include <limits>

#include "Dice.h"
#include "DisplayClock.h"
#include "HeldSound.h"
#include "OneFrameFurther.h"
#include "TileModel.h"
#include "VornWave2.h"

namespace {

using testing::Each;

constexpr float kHeight = 200;
constexpr float kInfinite = std::numeric_limits<float>::infinity();
constexpr float kNoNumber = std::numeric_limits<float>::quiet_NaN();

using Sound = std::shared_ptr<WaveSequenceAccess>;

WaveTileLayer gathered(const Sound& sound, std::int32_t start, std::int32_t stop) {
    WaveTileLayer tile(kHeight);
    tile.setWave(sound);
    tile.setStretch(start, stop);
    tile.gatherPeaks();
    return tile;
}

struct SoundDice : Dice {
    using Dice::Dice;
    float sample() {
        if (oneIn(200))
            return std::array{kNoNumber, kInfinite, -kInfinite, 0.f}[std::size_t(below(4))];
        return float(below(20001) - 10000) / 8000.f;
    }
    Sound sound() {
        std::vector<PieceSound::Piece> pieces(std::size_t(below(7)));
        const int longest = std::array{3, 40, 1500, 20000}[std::size_t(below(4))];
        for (auto& piece : pieces) {
            piece.format = below(3);
            piece.samples.resize(std::size_t(below(longest)) * (piece.format == 0 ? 1 : 2));
            std::ranges::generate(piece.samples, [this] { return sample(); });
        }
        return std::make_shared<PieceSound>(std::move(pieces));
    }
    /// Blocks of waves and of silence, sometimes one channel of them.
    Sound sequence() {
        auto whole = VornWaveSequence::initWithDescription(StreamDescription::float32(1));
        for (int i = below(5); i >= 0; --i) {
            const auto channels = std::uint32_t(1 + below(2)), frames = std::uint32_t(below(60000));
            std::vector<float> samples(frames * channels);
            std::ranges::generate(samples, [this] { return sample(); });
            const auto wave = VornWave2::initWithCopyOfData(
                samples.data(), frames, StreamDescription::float32(channels), "Tile");
            whole = whole->sequenceByAppendingBlock(
                oneIn(3) ? VornWaveBlock::blockOfSilenceLength(frames, channels, "")
                         : VornWaveBlock::blockWithWave(wave, frames / 7, frames / 2));
        }
        return oneIn(2) ? whole : whole->sequenceBySlicingChannel(std::uint32_t(below(2)));
    }
    int stretch() { return std::array{15, 1100, 40000, 400000}[std::size_t(below(4))]; }
};

void expectAsModel(const Sound& sound, std::int32_t start, std::int32_t stop) {
    const WaveTileLayer tile = gathered(sound, start, stop);
    const TileModel model(*sound, start, stop, kHeight);
    for (std::size_t k = 0; k < model.peaks.size(); ++k) {
        ASSERT_FLOAT_EQ(tile.peaks()[k], model.peaks[k]) << "column " << k;
        ASSERT_FLOAT_EQ(tile.pokes()[k], model.pokes[k]) << "column " << k;
    }
}

struct Canvas : TileContext {
    struct Rect {
        double x, top, width, height;
    };
    double clip = kHeight;
    std::vector<Rect> rects;
    int gradients = 0;
    double clipHeight() const override { return clip; }
    void drawGradient(const TileGradient&, double height) override {
        EXPECT_EQ(height, kHeight);
        EXPECT_TRUE(rects.empty());
        ++gradients;
    }
    void setFillColour(const TileColour& colour) override { EXPECT_EQ(colour.red, 0.25f); }
    void fillRect(double x, double y, double w, double h) override {
        rects.push_back({x, y, w, h});
    }
};

}  // namespace

TEST(WaveTileLayer, gathersWhatTheSlowModelDoes) {
    SoundDice dice(5);
    for (int round = 0; round < 600; ++round) {
        const Sound sound = round % 10 ? dice.sound() : dice.sequence();
        const int length = int(sound->sampleCount());
        const int span = 1 + dice.below(dice.stretch());
        const int start = dice.below(length + span + 2) - span;
        SCOPED_TRACE(testing::Message() << "round " << round << ": " << start << " + " << span);
        ASSERT_NO_FATAL_FAILURE(expectAsModel(sound, start, start + span));
    }
    constexpr int kFirst = std::numeric_limits<std::int32_t>::min();
    constexpr int kLast = std::numeric_limits<std::int32_t>::max();
    for (const std::size_t frames : {0u, 1u, 2u, 15u, 3000u})
        for (const auto& [start, stop] :
             {std::pair{0, 1}, {0, 2}, {-1, 1}, {0, 16}, {kFirst, kLast}, {0, kLast}, {-5, kLast}})
            expectAsModel(PieceSound::mono(std::vector<float>(frames, 0.5f)), start, stop);
}

TEST(WaveTileLayer, whatLiesOutsideTheSound) {
    const Sound steady = PieceSound::mono(std::vector<float>(1500, 0.5f));
    for (const auto& [start, stop] :
         {std::pair{-2000, 0}, {-50, -10}, {1500, 2600}, {7, 7}, {9, 3}}) {
        const WaveTileLayer tile = gathered(steady, start, stop);
        EXPECT_THAT(tile.peaks(), Each(1 / kHeight)) << start;
        EXPECT_THAT(tile.pokes(), Each(-1 / kHeight)) << start;
    }
    EXPECT_THAT(gathered(nullptr, 0, 1024).peaks(), Each(1 / kHeight));
    const WaveTileLayer before = gathered(steady, -512, 512), behind = gathered(steady, 1000, 2024);
    for (std::size_t k = 0; k < 1024; ++k) {
        EXPECT_EQ(before.peaks()[k], k < 512 ? 1 / kHeight : 0.5f) << k;
        EXPECT_EQ(behind.peaks()[k], k < 500 ? 0.5f : 0.f) << k;
        EXPECT_EQ(behind.pokes()[k], k < 500 ? -1 / kHeight : 0.f) << k;
    }
    // Closer than a frame a column there is a line, not an area, and what precedes is left out.
    const WaveTileLayer line = gathered(steady, -300, 100);
    EXPECT_EQ(line.pokes()[0], 0.5f);
    EXPECT_EQ(line.peaks()[1000], 0.f);
}

// Seen closely, each tile reaches its right neighbour; from further away nothing is different.
TEST(OneFrameFurther, closesTheGapsBetweenTiles) {
    SoundDice dice(5);
    for (int round = 0; round < 60; ++round) {
        std::vector<PieceSound::Piece> pieces(std::size_t(1 + dice.below(4)));
        for (auto& piece : pieces) {
            piece.format = dice.below(3);
            piece.samples.resize(std::size_t(2 + 2 * dice.below(900)), 0.5f);
        }
        const auto sound = std::make_shared<PieceSound>(std::move(pieces));
        const auto further = std::make_shared<OneFrameFurther>(sound);
        const int length = int(sound->sampleCount()), span = 1 + dice.below(1023);
        for (int start = 0; start + span < length; start += span)
            ASSERT_THAT(gathered(further, start, start + span).peaks(),
                        Each(testing::FloatEq(0.5f)))
                << "round " << round << ": " << start << " + " << span << " of " << length;
    }
    for (int round = 0; round < 300; ++round) {
        const Sound sound = round % 10 ? dice.sound() : dice.sequence();
        const auto further = std::make_shared<OneFrameFurther>(sound);
        const int span = 1024 + dice.below(dice.stretch());
        const int start = dice.below(int(sound->sampleCount()) + span + 2) - span;
        const WaveTileLayer near = gathered(sound, start, start + span);
        const WaveTileLayer far = gathered(further, start, start + span);
        ASSERT_EQ(near.peaks(), far.peaks()) << "round " << round << ": " << start << " + " << span;
        ASSERT_EQ(near.pokes(), far.pokes());
    }
}

TEST(WaveTileLayer, drawsFiniteColumnsInsideTheTile) {
    const Sound sound = PieceSound::mono({0.5f, -0.25f, 3, kInfinite, -kInfinite, kNoNumber, 5, 5});
    for (const double clip : {double(kHeight), 90.0, 0.0}) {
        for (const int span : {8, 2048}) {
            WaveTileLayer tile = gathered(sound, 0, span);
            tile.setDrawColour({0.25f, 0, 0, 1});
            Canvas canvas;
            canvas.clip = clip;
            tile.drawInContext(canvas);
            ASSERT_EQ(canvas.rects.size(), 1024u);
            EXPECT_EQ(canvas.gradients, 0);
            const double m = clip / 2;
            for (std::size_t k = 0; k < 1024; ++k) {
                const auto [x, top, width, height] = canvas.rects[k];
                ASSERT_EQ(x, double(k));
                ASSERT_EQ(width, 1);
                ASSERT_TRUE(top >= 0 && height >= 0 && top + height <= kHeight) << k;
                const double peak = tile.peaks()[k], poke = tile.pokes()[k];
                if (peak <= 1 && poke >= -1) {
                    ASSERT_DOUBLE_EQ(top, m - m * peak);
                    ASSERT_DOUBLE_EQ(height, m * (peak - poke));
                }
            }
        }
    }
}

TEST(WaveTileLayer, drawsNothingOnceItIsOutOfDate) {
    WaveTileLayer tile = gathered(PieceSound::mono({1, 1}), 0, 2);
    tile.setDrawColour({0.25f, 0, 0, 1});
    tile.setBackgroundGradient(TileGradient{});
    const int before = WaveTileLayer::liveTiles();
    WaveTileLayer copy(tile);
    EXPECT_EQ(WaveTileLayer::liveTiles(), before + 1);
    tile.markOutOfDate();
    EXPECT_TRUE(tile.backgroundWorkCancelled());
    Canvas canvas;
    tile.drawInContext(canvas);
    EXPECT_TRUE(canvas.rects.empty());
    copy.drawInContext(canvas);
    EXPECT_EQ(canvas.gradients, 1);
    EXPECT_EQ(copy.peaks(), tile.peaks());
    EXPECT_EQ(copy.wave(), tile.wave());
}

// The frames lie in memory that nobody has touched yet, far enough apart to have a page each.
TEST(WaveTileLayer, looksAtNoMoreThanFiveFramesAColumn) {
    constexpr std::size_t kFrames = 20 * 60 * 44100, kPage = 4096;
    struct Untouched final : PieceSound {
        explicit Untouched(const float* samples) : PieceSound({}), data(samples) {}
        WaveWindowList retrieveWindowsAt(std::uint32_t at, std::uint32_t* count) const override {
            auto list = std::make_unique<WaveWindow[]>(2);
            list[0] = {this, data + at, *count, 0};
            return list;
        }
        const float* data;
    };
    for (const int part : {1, 3, 7}) {
        void* memory = mmap(nullptr, kFrames * sizeof(float), PROT_READ,
                            MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
        ASSERT_NE(memory, MAP_FAILED);
        madvise(memory, kFrames * sizeof(float), MADV_NOHUGEPAGE);
        gathered(std::make_shared<Untouched>(static_cast<const float*>(memory)), 0,
                 int(kFrames) / part);
        std::vector<unsigned char> pages(kFrames * sizeof(float) / kPage + 1);
        ASSERT_EQ(mincore(memory, kFrames * sizeof(float), pages.data()), 0);
        const auto touched = std::ranges::count_if(pages, [](auto page) { return page & 1; });
        EXPECT_GE(touched, 1024);
        EXPECT_LE(touched, 5 * 1024 + 1);
        munmap(memory, kFrames * sizeof(float));
    }
}

TEST(WaveTileLayer, gatheringEndsAtTheNextColumnAndKeepsItsSoundForTheMainThread) {
    const auto life = std::make_shared<HeldSound::Life>();
    const auto tile = std::make_shared<WaveTileLayer>(kHeight);
    tile->setWave(std::make_shared<HeldSound>(life));
    tile->setStretch(0, 100000);
    std::thread worker([tile] { tile->gatherPeaks(); });
    life->awaitReaders(1);
    tile->setWave(nullptr);
    EXPECT_EQ(tile->wave(), nullptr);
    tile->setBackgroundWorkCancelled(true);
    life->isHeld = false;
    worker.join();
    EXPECT_EQ(life->freedOn.load(), std::thread::id());
    EXPECT_THAT(tile->peaks(), Each(1 / kHeight));
    tile->setWave(nullptr);
    EXPECT_EQ(life->freedOn.load(), std::this_thread::get_id());
}
