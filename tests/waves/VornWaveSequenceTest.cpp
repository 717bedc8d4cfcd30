#include "VornWaveSequence.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <limits>

#include "ScratchFolder.h"
#include "SharedSilence.h"
#include "VornWave2.h"
#include "log/Log.h"

using testing::ElementsAre;

namespace {

std::shared_ptr<VornWave2> waveOf(const std::vector<float>& samples, std::uint32_t channels,
                                  double rate = 44100) {
    return VornWave2::initWithCopyOfData(samples.data(),
                                         static_cast<std::uint32_t>(samples.size()) / channels,
                                         StreamDescription::float32(channels, rate), "Sequence");
}

VornWaveSequence::Pointer silence(std::uint32_t frames, std::uint32_t channels) {
    return VornWaveSequence::sequenceWithBlock(
        VornWaveBlock::blockOfSilenceLength(frames, channels, ""));
}

VornWaveSequence::Pointer channelOf(const VornWaveSequence& sequence, ExtractType type) {
    return sequence.sequenceBySlicingChannel(type == ExtractType::second ? 0 : 1);
}

std::vector<float> written(const VornWaveSequence& sequence, std::uint32_t frames) {
    std::vector<float> into(2 * frames, 9.f);
    EXPECT_EQ(sequence.write(frames, into.data()), std::min(frames, sequence.sampleCount()));
    return into;
}

}  // namespace

TEST(VornWaveSequence, windowsOfNothing) {
    const auto sequence =
        VornWaveSequence::sequenceWithWave(waveOf({1, 2, 3}, 1))
            ->sequenceByAppendingBlock(VornWaveBlock::blockWithWave(waveOf({4}, 1), 0, 0))
            ->sequenceByAppendingSequence(*silence(2, 1));
    std::uint32_t count = 7;
    EXPECT_EQ(sequence->retrieveWindowsAt(5, &count), nullptr);
    EXPECT_EQ(count, 7u);
    count = 3;
    const auto list = sequence->retrieveWindowsAt(2, &count);  // over the block without frames
    EXPECT_EQ(list[0].frameCount, 1u);
    EXPECT_EQ(list[1].frameCount, 2u);
    EXPECT_EQ(list[1].owner, sequence->blocks()[2].get());
    for (const std::uint32_t at : {0u, 1u, 3u}) {
        count = 0;
        const auto empty = sequence->retrieveWindowsAt(at, &count);
        ASSERT_NE(empty, nullptr);
        EXPECT_EQ(empty[0].data, nullptr);
        EXPECT_EQ(count, 0u);
    }
    std::uint32_t frame = 9;
    EXPECT_EQ(sequence->getBlockIndexForDataIndex(&frame), -1);
    EXPECT_EQ(sequence->sliceFrom(1, 0)->blocks().size(), 0u);
}

TEST(VornWaveSequence, writingOneChannelRaisesOneSample) {
    const auto wave = waveOf({1, 2, 3, 4, 5, 6}, 2);
    const auto sequence =
        VornWaveSequence::sequenceWithWave(wave)->sequenceByAppendingSequence(*silence(2, 2));
    EXPECT_THAT(written(*channelOf(*sequence, ExtractType::first), 4),
                ElementsAre(3, 5, 7, 9, 9, 9, 2, 9));
    EXPECT_EQ(wave->retrieveWindowAt(0, std::array{1u}.data(), nullptr)[0], 7.f);
    EXPECT_THAT(written(*channelOf(*sequence, ExtractType::second), 3),
                ElementsAre(5, 7, 9, 9, 9, 9));  // the sample behind the second one
    // Behind the last sample there is none, and silence is everybody's.
    EXPECT_THAT(written(*channelOf(*sequence->sliceFrom(2, 3), ExtractType::second), 3),
                ElementsAre(2, 9, 2, 4, 9, 9));
    EXPECT_TRUE(std::all_of(sharedSilence(), sharedSilence() + kSharedSilenceFloats,
                            [](float sample) { return sample == 0.f; }));
}

TEST(VornWaveSequence, allExtractingSequencesAnswerTheFirstOnesFormat) {
    const auto slow = VornWaveSequence::sequenceWithWave(waveOf({1, 2}, 2, 22050));
    const auto fast = VornWaveSequence::sequenceWithWave(waveOf({1, 2}, 2));
    const auto* description = channelOf(*slow, ExtractType::first)->audioDescription();
    EXPECT_EQ(*description, StreamDescription::float32(1, 22050));
    EXPECT_EQ(channelOf(*fast, ExtractType::second)->audioDescription(), description);
    EXPECT_EQ(*fast->audioDescription(), StreamDescription::float32(2));
}

TEST(VornWaveSequence, mergingTheChannelsOfASoundTakesItsBlocksOver) {
    const auto stereo = VornWaveSequence::sequenceWithWave(waveOf({1, 2, 3, 4}, 2))
                            ->sequenceByAppendingSequence(*silence(50000, 2));
    const auto merge = [](const VornWaveSequence& left, const VornWaveSequence& right) {
        return VornWaveSequence::sequenceByMergingMonoSequenceLeft(left, right, "");
    };
    const auto first = channelOf(*stereo, ExtractType::first);
    const auto second = channelOf(*stereo, ExtractType::second);
    const auto whole = merge(*first, *second);
    EXPECT_EQ(whole->blocks()[0], stereo->blocks()[0]);
    EXPECT_EQ(whole->sampleCount(), 50002u);
    EXPECT_TRUE(whole->blocks()[3]->isSilence());
    EXPECT_EQ(merge(*first, *second->sliceFrom(0, 1))->blocks()[0]->waveOrNil(),
              stereo->blocks()[0]->waveOrNil());
    // A sample may lie beside one of the next frame.
    const auto crossed = merge(*second->sliceFrom(0, 1), *first->sliceFrom(1, 1));
    EXPECT_THAT(written(*crossed, 1), ElementsAre(2, 3));
}

TEST(VornWaveSequence, whatDoesNotFitIsNoCrash) {
    const auto half = silence(4000000000u, 2);
    const auto endless = half->sequenceByAppendingSequence(*half);
    EXPECT_EQ(endless->sampleCount(), 4294967295u);
    EXPECT_EQ(endless->flattenInto("", 2)->sampleCount(), 0u);
    // Layouts that the description does not tell stay within the copy.
    const auto mixed =
        VornWaveSequence::sequenceWithWave(waveOf({1}, 1))
            ->sequenceByAppendingBlock(VornWaveBlock::blockWithWave(waveOf({2, 3, 4, 5}, 2)));
    EXPECT_EQ(mixed->flattenAndPadSequenceTo(3, "")->frameCount(), 3u);
    const auto oneOfMono = channelOf(*mixed, ExtractType::first);
    EXPECT_EQ(oneOfMono->flattenAndPadSequenceTo(5, "")->frameCount(), 5u);
    EXPECT_EQ(VornWaveSequence::sequenceWithSourceSequence(*silence(9, 2))
                  ->flattenAndPadSequenceTo(4, "", true)
                  ->frameCount(),
              4u);
}

TEST(VornWaveSequence, refusesWhatIsNoStoredSequence) {
    using Value = PropertyListValue;
    LookupTable table;
    const auto stored = VornWaveSequence::sequenceWithWave(waveOf({1, 2}, 1))
                            ->dictionaryRepresentationUsingWavetable(table);
    const auto read = [&](const Value& value) {
        return VornWaveSequence::sequenceFromDictionary(value, {waveOf({1, 2}, 1), nullptr});
    };
    ASSERT_NE(read(stored), nullptr);
    const std::vector<Value> wrong{
        -1, 4294967296, 1.5, "text", true, Value::Array{}, Value::Dictionary{}};
    for (const char* key : {"description", "list", "xType"}) {
        auto dictionary = *stored.dictionary();
        dictionary.erase(key);
        EXPECT_EQ(read(dictionary), nullptr) << key;
        for (const Value& value : wrong) {
            dictionary.insert_or_assign(key, value);
            EXPECT_EQ(read(dictionary) == nullptr, !(value == Value::Array{} && key[0] == 'l'))
                << key;
        }
    }
    for (const auto& [key, number] : *stored.dictionary()->at("description").dictionary()) {
        auto dictionary = *stored.dictionary();
        auto description = *dictionary.at("description").dictionary();
        description.insert_or_assign(key, -1);
        dictionary.insert_or_assign("description", description);
        EXPECT_EQ(read(dictionary), nullptr) << key;
    }
    for (const Value& entry : std::vector<Value>{
             Value::Array{0, 0}, Value::Array{0, 0, 1, "", ""}, Value::Array{1, 0, 1},
             Value::Array{2, 0, 1}, Value::Array{9223372036854775807, 0, 1},
             Value::Array{std::numeric_limits<std::int64_t>::min(), 0, 1}, Value::Array{-3, 0, 1},
             Value::Array{0, -1, 1}, Value::Array{0, 0, 4294967296}, Value::Array{"0", 0, 1},
             Value::Array{-1, 0, 1, 5}, Value(0)}) {
        auto dictionary = *stored.dictionary();
        dictionary.insert_or_assign("list", Value::Array{entry});
        EXPECT_EQ(read(dictionary), nullptr);
    }
}

TEST(VornWaveSequence, movingFilesNeverTouchesOthers) {
    const ScratchFolder from, to;
    std::filesystem::create_directory(from.path() / "deep");
    waveOf({1}, 1)->writeWavFile(from.file("a.wav"));
    waveOf({2}, 1)->writeWavFile(from.file("deep/a.wav"));
    std::ofstream(to.file("a.wav")) << "mine";
    const auto wave = VornWave2::initWithContentsOfFile("a.wav", from.path());
    const auto sequence = VornWaveSequence::sequenceWithWave(wave)->sequenceByAppendingSequence(
        *VornWaveSequence::sequenceWithWave(
            VornWave2::initWithContentsOfFile("a.wav", from.path() / "deep")));
    const auto moved = sequence->remapIntoDocumentFolder(to.path());
    EXPECT_EQ(std::filesystem::file_size(to.file("a.wav")), 4u);
    EXPECT_EQ(moved->blocks()[0]->waveOrNil()->filename(), "a 2.wav");
    EXPECT_EQ(moved->blocks()[1]->waveOrNil()->filename(), "a 3.wav");
    EXPECT_EQ(written(*moved, 2)[1], 2.f);

    const auto nowhere = to.file("missing");
    EXPECT_EQ(sequence->remapIntoDocumentFolder(nowhere), sequence);
    std::filesystem::remove(from.file("a.wav"));
    const auto flat = sequence->remapIntoDocumentFolder(to.path());
    EXPECT_EQ(Log::lines().back(), "WriteInto[1] end");
    EXPECT_EQ(std::ranges::count(Log::lines(), "Flattening due to missing file entries"), 1);
    ASSERT_EQ(flat->blocks().size(), 1u);
    EXPECT_THAT(written(*flat, 2), ElementsAre(1, 2, 9, 9));
}

TEST(VornWaveSequence, savingReplacesAFileOnlyByAWholeOne) {
    const ScratchFolder folder;
    const auto wave = waveOf({1, 2, 3, 4}, 2);
    EXPECT_TRUE(wave->saveTo("a.wav", folder.path()));
    EXPECT_EQ(wave->filename(), "a.wav");
    EXPECT_EQ(wave->residency(), VornWave2::onDisk);
    EXPECT_EQ(wave->fullPath(), "");
    std::filesystem::create_directories(folder.path() / "b.wav" / "inside");
    EXPECT_FALSE(wave->saveTo("b.wav", folder.path()));
    EXPECT_EQ(wave->filename(), "a.wav");
    EXPECT_FALSE(VornWave2::initWithReferenceToFile("a.wav", folder.path())
                     ->writeWavFile(folder.file("a.wav")));  // not loaded
    const auto read = VornWave2::initWithContentsOfFile("a.wav", folder.path());
    EXPECT_THAT(written(*VornWaveSequence::sequenceWithWave(read), 2), ElementsAre(1, 2, 3, 4));
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path()), {}), 2);
}
