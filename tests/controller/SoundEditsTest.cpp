#include "editing/SoundEdits.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <random>

#include "VornWave2.h"
#include "editing/EditHistory.h"
#include "editing/SoundEdit.h"
#include "editing/SpanEdits.h"

namespace {

using Sound = VornWaveSequence::Pointer;
using Samples = std::vector<float>;  // interleaved

Sound soundOf(const Samples& samples, std::uint32_t channels) {
    const auto frames = static_cast<std::uint32_t>(samples.size() / channels);
    return VornWaveSequence::sequenceWithWave(VornWave2::initWithCopyOfData(
        samples.data(), frames, StreamDescription::float32(channels), "Test"));
}

Samples samplesOf(const VornWaveSequence& sound, std::uint32_t channels) {
    Samples samples(std::size_t{sound.sampleCount()} * channels);
    EditWatch watch;
    const auto flat = SoundCopy::flat(sound, EditSpan::whole(sound.sampleCount()), channels, watch);
    EXPECT_TRUE(flat.wave) << flat.error;
    if (flat.wave)
        flat.wave->write(flat.wave->sampleCount(), samples.data());
    return samples;
}

bool same(float a, float b) {
    return a == b || (std::isnan(a) && std::isnan(b));
}

/// The edits, on plain memory.
struct Model {
    Samples samples;
    std::uint32_t channels;

    auto place(std::uint32_t frame) { return samples.begin() + frame * channels; }
    void edit(SoundEdit edit, const EditSpan& span) {
        using enum SoundEdit;
        const auto from = place(span.from), to = place(span.to);
        switch (edit) {
            case crop:
                samples = Samples(from, to);
                break;
            case cut:
                samples.erase(from, to);
                break;
            case silence:
                std::fill(from, to, 0.f);
                break;
            case fadeIn:
                return fade(span, [](auto i, auto) { return i; });
            case fadeOut:
                return fade(span, [](auto i, auto n) { return n - 1 - i; });
            case normalise:
                return normaliseSpan(span);
            case reverse:
                for (auto i = span.from, j = span.to; i + 1 < j; ++i)
                    std::swap_ranges(place(i), place(i + 1), place(--j));
                break;
            case join:
                break;
        }
    }
    template <typename Place>
    void fade(const EditSpan& span, Place at) {
        for (std::uint32_t i = 0; i < span.frames(); ++i) {
            const double x = double(at(i, span.frames())) / span.frames();
            const auto gain = float(0.5 - 0.5 * std::cos(std::numbers::pi * x));
            for (auto s = place(span.from + i); s != place(span.from + i + 1); ++s)
                *s *= gain;
        }
    }
    void normaliseSpan(const EditSpan& span) {
        float peak = 0;
        for (auto s = place(span.from); s != place(span.to); ++s)
            peak = std::isfinite(*s) ? std::max(peak, std::abs(*s)) : peak;
        for (auto s = place(span.from); s != place(span.to); ++s) {
            const float scaled = peak > 0 ? *s / peak : *s;
            *s = std::isnan(*s) ? 0.f : std::clamp(scaled, -1.f, 1.f);
        }
    }
    void join(const Model& other) {
        for (std::size_t i = 0; i < other.samples.size(); i += other.channels) {
            const float left = other.samples[i], right = other.samples[i + other.channels - 1];
            if (channels == 1)
                samples.push_back(other.channels == 1 ? left : (left + right) * 0.5f);
            else
                samples.insert(samples.end(), {left, right});
        }
    }
};

class Editing {
  public:
    Editing(std::uint32_t channels, unsigned seed) : m_random(seed), m_channels(channels) {
        const Model first = noise(channels, 3000);
        m_models.push_back(first);
        m_history.begin({soundOf(first.samples, channels), {}});
    }

    void step() {
        switch (below(10)) {
            case 0:
            case 1:
                m_at -= m_history.canUndo();
                return m_history.undo();
            case 2:
                m_at += m_history.canRedo();
                return m_history.redo();
            case 3:
                return join();
            default:
                return edit(static_cast<SoundEdit>(below(7)));
        }
    }
    void expectSame() {
        const Samples& expected = m_models[m_at].samples;
        const Samples heard = samplesOf(*m_history.now().sound, m_channels);
        ASSERT_EQ(heard.size(), expected.size());
        const auto apart = std::ranges::mismatch(heard, expected, same);
        ASSERT_EQ(apart.in1, heard.end()) << "sample " << apart.in1 - heard.begin() << ": "
                                          << *apart.in1 << ", not " << *apart.in2;
    }

  private:
    std::uint32_t below(std::uint32_t n) { return static_cast<std::uint32_t>(m_random() % n); }

    Model noise(std::uint32_t channels, std::uint32_t frames) {
        Model model{Samples(std::size_t{frames} * channels), channels};
        for (float& sample : model.samples)
            sample = below(3) == 0 ? 0.f : float(below(2000)) / 1000.f - 1.f;
        if (below(3) == 0)
            model.samples[below(static_cast<std::uint32_t>(model.samples.size()))] =
                below(2) ? std::nanf("") : -std::numeric_limits<float>::infinity();
        return model;
    }

    void edit(SoundEdit what) {
        const VornWaveSequence& sound = *m_history.now().sound;
        const std::uint32_t length = sound.sampleCount();
        // Past the end too, and the wrong way round.
        const EditSpan span = EditSpan::between(below(length + 20), below(length + 20), length);
        SoundEdits::Edited edited;
        if (what == SoundEdit::crop)
            edited = SoundEdits::crop(sound, span);
        else if (what == SoundEdit::cut)
            edited = SoundEdits::cut(sound, span);
        else if (what == SoundEdit::silence)
            edited = SoundEdits::silence(sound, span);
        else if (!span.empty())
            edited = SoundEdits::replace(sound, span, made(what, sound, span));
        else
            return;
        const bool refused = span.empty() || (span.frames() == length && what <= SoundEdit::cut);
        ASSERT_EQ(edited.sound == nullptr, refused) << edited.refusal;
        ASSERT_EQ(edited.refusal.empty(), !refused);
        if (refused || (what == SoundEdit::crop && span.frames() < 200))
            return;
        Model next = m_models[m_at];
        next.edit(what, span);
        add(edited.sound, std::move(next));
    }
    std::shared_ptr<VornWave2> made(SoundEdit what, const VornWaveSequence& sound,
                                    const EditSpan& span) const {
        const auto kind = static_cast<SpanEdits::Kind>(int(what) - int(SoundEdit::fadeIn));
        EditWatch watch;
        return SpanEdits::edited(sound, span, kind, m_channels, watch).wave;
    }
    void join() {
        const Model other = noise(1 + below(2), 1 + below(1000));
        Model next = m_models[m_at];
        if (next.samples.size() > 20000)
            return;
        next.join(other);
        const auto edited =
            SoundEdits::join(*m_history.now().sound, *soundOf(other.samples, other.channels));
        ASSERT_TRUE(edited.sound) << edited.refusal;
        add(edited.sound, std::move(next));
    }
    void add(const Sound& sound, Model next) {
        m_history.add("edit", {sound, {}});
        m_models.resize(++m_at);
        m_models.push_back(std::move(next));
    }

    std::minstd_rand m_random;
    std::uint32_t m_channels;
    EditHistory m_history;
    std::vector<Model> m_models;
    std::size_t m_at = 0;
};

}  // namespace

TEST(SoundEdits, anyEditsUndoneAndRedoneAreThoseOfPlainMemory) {
    for (const unsigned seed : {1u, 2u, 3u, 4u}) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        Editing editing(1 + seed % 2, seed);
        for (int i = 0; i < 1500 && !testing::Test::HasFatalFailure(); ++i) {
            SCOPED_TRACE("step " + std::to_string(i));
            editing.step();
            editing.expectSame();
        }
    }
}

TEST(SoundEdits, listsStayShortAndLengthsStayInRange) {
    Sound sound = soundOf(Samples(10000), 1);
    for (std::uint32_t i = 0; i < 100; ++i)
        sound = SoundEdits::silence(*sound, {i * 100, i * 100 + 100}).sound;
    EXPECT_EQ(sound->blocks().size(), 1u);
    const Sound source = soundOf(Samples(10000), 1);
    const auto part = SoundEdits::crop(*source, {0, 4000}).sound;
    const auto rest = SoundEdits::crop(*source, {4000, 10000}).sound;
    EXPECT_EQ(SoundEdits::join(*part, *rest).sound->blocks().size(), 1u);

    const auto most = VornWaveSequence::sequenceWithBlock(
        VornWaveBlock::blockOfSilenceLength(SoundEdits::kMostFrames - 5, 1, ""));
    const auto five = SoundEdits::crop(*source, {0, 5}).sound;
    const Sound full = SoundEdits::join(*most, *five).sound;
    ASSERT_TRUE(full);
    EXPECT_EQ(full->sampleCount(), SoundEdits::kMostFrames);
    EXPECT_FALSE(SoundEdits::join(*full, *five).sound);
    EXPECT_NE(SoundEdits::join(*full, *five).refusal, "");
    EXPECT_EQ(SoundEdits::cut(*full, {1, SoundEdits::kMostFrames - 1}).sound->sampleCount(), 2u);
}
