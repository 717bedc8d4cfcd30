#pragma once

#include <gmock/gmock.h>

#include <algorithm>
#include <atomic>
#include <memory>
#include <thread>
#include <vector>

#include "RenderWatch.h"
#include "TestUnits.h"
#include "WaveAccess.h"
#include "runloop/Clock.h"
#include "runloop/RunLoop.h"

/// A sound made of windows of any format and length, none included. Its samples turn to -1 when it
/// goes.
class WindowSound : public WaveSequenceAccess {
  public:
    struct Piece {
        std::int32_t format;
        std::vector<float> samples;  // one or two floats a frame, by the format
        std::uint32_t frames() const {
            return std::uint32_t(samples.size() / (format == 0 ? 1 : 2));
        }
    };
    struct Frame {
        float left, right;
        bool stereo;
    };

    explicit WindowSound(std::vector<Piece> pieces) : m_pieces(std::move(pieces)) {}
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

    std::uint32_t sampleCount() const override {
        std::uint32_t count = 0;
        for (const Piece& piece : m_pieces)
            count += piece.frames();
        return count;
    }
    const StreamDescription* audioDescription() const override { return &m_description; }
    WaveWindowList retrieveWindowsAt(std::uint32_t, std::uint32_t* count) const override {
        *count = sampleCount();
        if (m_pieces.empty())
            return nullptr;
        auto list = std::make_unique<WaveWindow[]>(m_pieces.size() + 1);
        static const float nothing[2] = {};
        for (std::size_t i = 0; i < m_pieces.size(); ++i) {
            const Piece& piece = m_pieces[i];
            const float* data = piece.samples.empty() ? nothing : piece.samples.data();
            list[i] = {this, data + (piece.format == 2), piece.frames(), piece.format};
        }
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
    std::vector<Piece> m_pieces;
    StreamDescription m_description = StreamDescription::float32(2);
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

/// A clock that the test turns.
class HandClock final : public TimeSource {
  public:
    HandClock() { Clock::setSource(this); }
    ~HandClock() override { Clock::setSource(nullptr); }
    double now() noexcept override { return m_now; }
    /// Lets time pass and calls what is due.
    void pass(double seconds) {
        m_now += seconds;
        RunLoop::main().turn();
    }

  private:
    double m_now = 0;
};

/// Renders buffer after buffer on a thread of its own while this one makes changes; after every
/// other change, as the dice fall, a whole buffer is waited for.
template <typename Render, typename Change>
void changeWhileRendering(HandClock& clock, Dice& dice, Render renderBuffer, Change change) {
    std::atomic<bool> done{false};
    std::atomic<int> buffers{0};
    RenderWatch watch;
    std::thread audio([&] {
        for (; !done; ++buffers)
            renderBuffer();
    });
    for (int i = 0; i < 500; ++i) {
        change();
        clock.pass(0.1);
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
