#pragma once

#include <algorithm>
#include <atomic>
#include <memory>
#include <random>
#include <thread>
#include <vector>

#include "VornWaveSequence.h"

struct Dice : std::mt19937 {
    using std::mt19937::mt19937;
    int below(int limit) { return int((*this)() % unsigned(limit)); }
    bool oneIn(int chances) { return below(chances) == 0; }
};

/// A sound of windows of any format and length, none included, that keeps to what is asked for.
class PieceSound : public WaveSequenceAccess {
  public:
    struct Piece {
        std::int32_t format;
        std::vector<float> samples;  // one or two floats a frame, by the format
        std::uint32_t frames() const {
            return std::uint32_t(samples.size() / (format == 0 ? 1 : 2));
        }
    };

    explicit PieceSound(std::vector<Piece> pieces) : m_pieces(std::move(pieces)) {}
    static std::shared_ptr<PieceSound> mono(std::vector<float> samples) {
        return std::make_shared<PieceSound>(std::vector<Piece>{{0, std::move(samples)}});
    }

    std::uint32_t sampleCount() const override {
        std::uint32_t count = 0;
        for (const Piece& piece : m_pieces)
            count += piece.frames();
        return count;
    }
    const StreamDescription* audioDescription() const override { return &m_description; }
    WaveWindowList retrieveWindowsAt(std::uint32_t at, std::uint32_t* count) const override {
        if (at >= sampleCount())
            return nullptr;
        std::vector<WaveWindow> windows;
        std::uint32_t wanted = *count;
        for (const Piece& piece : m_pieces) {
            const std::uint32_t skipped = std::min(at, piece.frames());
            const std::uint32_t taken = std::min(wanted, piece.frames() - skipped);
            const std::size_t perFrame = piece.format == 0 ? 1 : 2;
            // Windows without frames are legal, but not behind the last frame that was asked for.
            if (wanted > 0 && (taken > 0 || skipped == 0))
                windows.push_back(
                    {this,
                     piece.samples.empty()
                         ? &kNothing
                         : piece.samples.data() + skipped * perFrame + (piece.format == 2 ? 1 : 0),
                     taken, piece.format});
            at -= skipped;
            wanted -= taken;
        }
        *count -= wanted;
        auto list = std::make_unique<WaveWindow[]>(windows.size() + 1);
        std::ranges::copy(windows, list.get());
        return list;
    }
    std::uint32_t write(std::uint32_t, float*) const override { return 0; }
    std::shared_ptr<VornWave2> flattenInto(const std::string&, std::uint32_t) const override {
        return nullptr;
    }
    std::shared_ptr<VornWaveSequence> sliceFrom(std::uint32_t, std::uint32_t) const override {
        return nullptr;
    }

  private:
    static constexpr float kNothing = 0;
    std::vector<Piece> m_pieces;
    StreamDescription m_description = StreamDescription::float32(2);
};

/// A sound whose reading waits for the test, and whose memory is freed with it. Says where it was
/// freed.
class HeldSound final : public PieceSound {
  public:
    struct Life {
        std::atomic<bool> isHeld{true};
        std::atomic<int> readers{0};
        std::atomic<std::thread::id> freedOn{};
        void awaitReaders(int count) const {
            while (readers < count)
                std::this_thread::yield();
        }
    };

    explicit HeldSound(std::shared_ptr<Life> life, std::size_t frames = 100000)
        : PieceSound({{0, std::vector<float>(frames, 0.5f)}}), m_life(std::move(life)) {}
    ~HeldSound() override { m_life->freedOn = std::this_thread::get_id(); }
    WaveWindowList retrieveWindowsAt(std::uint32_t at, std::uint32_t* count) const override {
        ++m_life->readers;
        while (m_life->isHeld)
            std::this_thread::yield();
        return PieceSound::retrieveWindowsAt(at, count);
    }

  private:
    std::shared_ptr<Life> m_life;
};
