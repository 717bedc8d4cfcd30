#pragma once

#include <gmock/gmock.h>

#include <algorithm>
#include <atomic>
#include <memory>
#include <thread>
#include <vector>

#include "ManualClock.h"
#include "PieceSound.h"
#include "RenderWatch.h"
#include "TestUnits.h"

/// Hands out all of its windows at once, those without frames too. Its samples turn to -1 when it
/// goes.
class WindowSound : public PieceSound {
  public:
    struct Frame {
        float left, right;
        bool stereo;
    };

    using PieceSound::PieceSound;
    ~WindowSound() override {
        for (Piece& piece : m_pieces)
            std::ranges::fill(piece.samples, -1.f);
    }
    static std::shared_ptr<WindowSound> mono(std::vector<float> samples) {
        return std::make_shared<WindowSound>(std::vector<Piece>{{0, std::move(samples)}});
    }
    static std::shared_ptr<WindowSound> random(Dice& dice, int longest) {
        std::vector<Piece> pieces(std::size_t(dice.below(6)));
        for (Piece& piece : pieces) {
            piece.format = dice.below(3);
            const int frames = dice.oneIn(3) ? 0 : dice.below(longest);
            piece.samples = dice.noise(std::size_t(frames * (piece.format == 0 ? 1 : 2)), 2.f);
        }
        return std::make_shared<WindowSound>(std::move(pieces));
    }

    std::size_t windows() const { return m_pieces.size(); }
    /// Frame by frame what it sounds like.
    std::vector<Frame> frames() const {
        std::vector<Frame> all;
        for (const Piece& piece : m_pieces) {
            const float* s = piece.samples.data();
            for (std::uint32_t i = 0; i < piece.frames(); ++i) {
                if (piece.format == 0)
                    all.push_back({s[i], s[i], false});
                else if (piece.format == 1)
                    all.push_back({s[2 * i], s[2 * i + 1], true});
                else
                    all.push_back({s[2 * i + 1], s[2 * i + 1], false});
            }
        }
        return all;
    }

    WaveWindowList retrieveWindowsAt(std::uint32_t, std::uint32_t* count) const override {
        *count = sampleCount();
        if (m_pieces.empty())
            return nullptr;
        auto list = std::make_unique<WaveWindow[]>(m_pieces.size() + 1);
        for (std::size_t i = 0; i < m_pieces.size(); ++i) {
            const Piece& piece = m_pieces[i];
            const float* data =
                piece.samples.empty() ? &kNothing : piece.samples.data() + (piece.format == 2);
            list[i] = {this, data, piece.frames(), piece.format};
        }
        return list;
    }
};

/// Renders stereo, as a mixer asks for it.
template <typename Sample>
std::vector<Sample> renderStereo(const VornUnit& unit, std::uint32_t frames,
                                 bool* silent = nullptr) {
    std::vector<Sample> out(2 * frames, Sample(77));
    AudioBufferList list =
        AudioBufferList::single(out.data(), 2, std::uint32_t(out.size() * sizeof(Sample)));
    AudioUnitRenderActionFlags flags = 0;
    const AudioTimeStamp time;
    RenderScope scope;
    unit.callback()->inputProc(unit.callback()->inputProcRefCon, &flags, &time, 0, frames, &list);
    if (silent)
        *silent = (flags & kAudioUnitRenderAction_OutputIsSilence) != 0;
    return out;
}

/// Renders buffer after buffer on a thread of its own while this one makes changes; after every
/// other change, as the dice fall, a whole buffer is waited for.
template <typename Render, typename Change>
void changeWhileRendering(ManualClock& clock, Dice& dice, Render renderBuffer, Change change) {
    std::atomic<bool> done{false};
    std::atomic<int> buffers{0};
    RenderWatch watch;
    std::thread audio([&] {
        for (; !done; ++buffers)
            renderBuffer();
    });
    for (int i = 0; i < 500; ++i) {
        change();
        clock.step(0.1);
        if (dice.oneIn(2)) {
            for (const int seen = buffers; buffers < seen + 2;)
                std::this_thread::yield();
        }
    }
    done = true;
    audio.join();
    EXPECT_THAT(watch.violations(), testing::IsEmpty());
}

inline std::int16_t steps(float value) {
    if (!(value < 32767.f))
        return 32767;
    if (!(value > -32768.f))
        return -32768;
    return std::int16_t(value);
}
