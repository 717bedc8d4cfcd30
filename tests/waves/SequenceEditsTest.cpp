#include <gtest/gtest.h>

#include <random>

#include "ScratchFolder.h"
#include "SequenceModel.h"
#include "VornWave2.h"

namespace {

using Frame = SequenceModel::Frame;
using Frames = SequenceModel::Frames;

Frames framesOf(const WaveWindow* window) {
    Frames frames;
    for (; window && window->data; ++window)
        for (std::size_t i = 0; i < window->frameCount; ++i) {
            const float* frame = window->data + i * (window->format == 0 ? 1 : 2);
            frames.push_back({frame[0], window->format == 1 ? frame[1] : frame[0]});
        }
    return frames;
}

Frames framesOf(const WaveAccess& sound) {
    std::uint32_t count = sound.sampleCount();
    const auto list = sound.retrieveWindowsAt(0, &count);
    const Frames frames = framesOf(list.get());
    EXPECT_EQ(list ? count : 0, frames.size());
    return frames;
}

Frames padded(Frames frames, std::size_t length) {
    frames.resize(std::max(length, frames.size()));
    return frames;
}

Frames meansOf(Frames frames) {
    for (Frame& frame : frames)
        frame.left = frame.right = (frame.left + frame.right) * 0.5f;
    return frames;
}

/// Cuts and joins sounds at random, each beside its model.
class Edits {
  public:
    struct Sound {
        VornWaveSequence::Pointer sequence;
        SequenceModel model;
    };

    explicit Edits(unsigned seed) : m_random(seed) {
        for (std::uint32_t i = 0; i < 12; ++i)
            m_sounds.push_back(source(i % 4, 1 + i / 4 % 2));
    }

    void step() {
        Sound& target = pick();
        Sound made = edited(pick(), pick());
        if (made.model.length() < 200000)
            target = std::move(made);
        check(target);
    }

  private:
    std::uint32_t below(std::size_t end) { return static_cast<std::uint32_t>(m_random() % end); }
    Sound& pick() { return m_sounds[below(m_sounds.size())]; }

    /// A wave in memory, one in a file, one that is still loading, or silence.
    Sound source(std::uint32_t kind, std::uint32_t channels) {
        SequenceModel::Piece piece{{}, channels, kind == 3, kind == 2};
        std::vector<float> samples;
        const std::uint32_t length = kind == 3 && below(2) ? below(60000) : 1 + below(300);
        for (std::uint32_t i = 0; i < length; ++i) {
            const float left = kind == 3 ? 0.f : m_next++;
            piece.frames.push_back({left, kind == 3 || channels == 1 ? left : m_next++});
            samples.push_back(left);
            if (channels == 2)
                samples.push_back(piece.frames.back().right);
        }
        auto block = VornWaveBlock::blockOfSilenceLength(length, channels, m_folder.path());
        if (kind < 3) {
            auto wave = VornWave2::initWithCopyOfData(samples.data(), length,
                                                      StreamDescription::float32(channels), "Edit");
            const std::string name = std::to_string(m_files++) + ".wav";
            if (kind > 0) {
                EXPECT_TRUE(wave->writeWavFile(m_folder.file(name)));
                wave = VornWave2::initWithReferenceToFile(name, m_folder.path());
            }
            if (kind == 1)
                wave->fetch(1);
            block = VornWaveBlock::blockWithWave(wave);
        }
        return {VornWaveSequence::sequenceWithBlock(block), {{std::move(piece)}}};
    }

    Sound edited(const Sound& a, const Sound& b) {
        switch (below(6)) {
            case 0:
                return source(below(4), 1 + below(2));
            case 1:
                return appended(a, b);
            case 2:
                return sliced(a);
            case 3:
                return channelOf(a, below(2));
            case 4:
                return merged(channelOf(a, 1), channelOf(b, below(3) == 0));
            default:
                return appended(sliced(a), b);
        }
    }
    static Sound appended(const Sound& a, const Sound& b) {
        Sound made{a.sequence->sequenceByAppendingSequence(*b.sequence), a.model};
        made.model.pieces.insert(made.model.pieces.end(), b.model.pieces.begin(),
                                 b.model.pieces.end());
        return made;
    }
    Sound sliced(const Sound& a) {
        const std::uint32_t from = below(a.model.length() + 2), count = below(a.model.length() + 9);
        auto slice = a.sequence->sliceFrom(from, count);
        EXPECT_EQ(slice == nullptr, from >= a.model.length());
        return slice ? Sound{slice, a.model.slice(from, count)} : a;
    }
    static Sound channelOf(const Sound& a, std::uint32_t channel) {
        Sound made{a.sequence->sequenceBySlicingChannel(channel), a.model};
        made.model.type = channel == 0 ? ExtractType::second : ExtractType::first;
        return made;
    }
    Sound merged(const Sound& a, const Sound& b) {
        return {VornWaveSequence::sequenceByMergingMonoSequenceLeft(*a.sequence, *b.sequence,
                                                                    m_folder.path()),
                SequenceModel::merged(a.model, b.model)};
    }

    void check(const Sound& sound) {
        ASSERT_EQ(sound.sequence->sampleCount(), sound.model.length());
        const Frames heard = sound.model.heard();
        ASSERT_EQ(framesOf(*sound.sequence), heard);
        checkPart(sound, heard);
        checkFlat(sound, heard);
        checkPadded(sound, heard);
        checkStored(sound);
        if (below(8) == 0)
            checkRemapped(sound, heard);
    }
    void checkPart(const Sound& sound, const Frames& heard) {
        if (sound.model.has(&SequenceModel::Piece::loading) || heard.empty())
            return;
        const std::uint32_t from = below(heard.size());
        const std::uint32_t wanted = below(2) ? below(500) : 4294967295u - below(9);
        std::uint32_t count = wanted;
        const auto list = sound.sequence->retrieveWindowsAt(from, &count);
        ASSERT_EQ(count, std::min<std::size_t>(wanted, heard.size() - from));
        const auto begin = heard.begin() + from;
        ASSERT_EQ(framesOf(list.get()), Frames(begin, begin + count));
    }
    void checkFlat(const Sound& sound, const Frames& heard) {
        const std::size_t length = sound.model.length();
        ASSERT_EQ(framesOf(*sound.sequence->flattenInto("", 2)), padded(heard, length));
        ASSERT_EQ(framesOf(*sound.sequence->flattenInto("", 1)), padded(meansOf(heard), length));
    }
    void checkPadded(const Sound& sound, const Frames& heard) {
        const auto whole = VornWaveSequence::sequenceWithSourceSequence(*sound.sequence);
        if (whole->audioDescription()->mChannelsPerFrame != 2)
            return;
        const std::uint32_t channels = sound.model.type == ExtractType::all ? 2 : 1;
        if (sound.model.has(&SequenceModel::Piece::loading) || !sound.model.isAll(2) ||
            sound.sequence->isEntirelySilence())
            return;
        const auto length = static_cast<std::uint32_t>(heard.size()) + below(50);
        const auto block = sound.sequence->flattenAndPadSequenceTo(length, "");
        ASSERT_EQ(block->audioDescription()->mChannelsPerFrame, channels);
        ASSERT_EQ(framesOf(*block), padded(heard, length));
    }
    void checkStored(const Sound& sound) {
        LookupTable table;
        const auto stored = sound.sequence->dictionaryRepresentationUsingWavetable(table);
        std::vector<std::shared_ptr<VornWave2>> waves(table.count());
        for (const auto& wave : sound.sequence->onDiskSourceList())
            waves.at(table.referenceItem(wave.get())) = wave;
        const auto read = VornWaveSequence::sequenceFromDictionary(stored, waves);
        ASSERT_NE(read, nullptr);
        ASSERT_EQ(read->extractType(), sound.model.type);
        LookupTable again;
        ASSERT_EQ(read->dictionaryRepresentationUsingWavetable(again), stored);
        ASSERT_EQ(again.itemList(), table.itemList());
    }
    /// Files are linked into a folder; with a wave that has none the whole is flattened.
    void checkRemapped(const Sound& sound, const Frames& heard) {
        if (sound.model.has(&SequenceModel::Piece::loading))
            return;
        const auto waves = sound.sequence->onDiskSourceList();
        const bool flattens =
            std::ranges::any_of(waves, [](auto& wave) { return wave->fullPath().empty(); });
        const ScratchFolder there;
        const auto moved = sound.sequence->remapIntoDocumentFolder(there.path());
        for (const auto& wave : moved->onDiskSourceList())
            ASSERT_EQ(wave->fullPath().starts_with(there.path().string()), !flattens);
        const bool mono = moved->audioDescription()->mChannelsPerFrame == 1;
        ASSERT_EQ(framesOf(*moved), flattens && mono ? meansOf(heard) : heard);
        ASSERT_EQ(sound.sequence->remapIntoDocumentFolder(m_folder.path()) == sound.sequence,
                  !flattens);
    }

    ScratchFolder m_folder;
    std::mt19937 m_random;
    std::vector<Sound> m_sounds;
    float m_next = 1.f;
    int m_files = 0;
};

}  // namespace

TEST(VornWaveSequence, soundsLikePlainFramesAfterAnyEdits) {
    for (const unsigned seed : {1u, 2u, 3u, 4u}) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        Edits edits(seed);
        for (int i = 0; i < 250 && !testing::Test::HasFatalFailure(); ++i)
            edits.step();
    }
}
