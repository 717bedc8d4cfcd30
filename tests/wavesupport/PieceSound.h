#pragma once

#include <algorithm>
#include <memory>
#include <vector>

#include "VornWaveSequence.h"

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

  protected:
    static constexpr float kNothing = 0;
    std::vector<Piece> m_pieces;

  private:
    StreamDescription m_description = StreamDescription::float32(2);
};
