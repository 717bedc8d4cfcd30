#include "VornWaveBlock.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "SharedSilence.h"
#include "VornWave2.h"
#include "log/Log.h"

using testing::ElementsAre;

namespace {

constexpr std::uint32_t kHuge = 4294967295u;

std::shared_ptr<VornWaveBlock> blockOf(const std::vector<float>& samples, std::uint32_t channels) {
    return VornWaveBlock::blockWithWave(VornWave2::initWithCopyOfData(
        samples.data(), static_cast<std::uint32_t>(samples.size()) / channels,
        StreamDescription::float32(channels), "Block"));
}

std::vector<std::uint32_t> windowLengths(const WaveAccess& sound, std::uint32_t at,
                                         std::uint32_t count) {
    const auto list = sound.retrieveWindowsAt(at, &count);
    std::vector<std::uint32_t> lengths;
    for (const WaveWindow* window = list.get(); window && window->data; ++window) {
        EXPECT_EQ(window->owner, &sound);
        lengths.push_back(window->frameCount);
        count -= window->frameCount;
    }
    EXPECT_EQ(count, 0u);
    return lengths;
}

}  // namespace

TEST(VornWaveBlock, silenceOfAnyLengthIsWindowsOntoOneBuffer) {
    const auto mono = VornWaveBlock::blockOfSilenceLength(100000, 1, "");
    const auto stereo = VornWaveBlock::blockOfSilenceLength(100000, 2, "");
    EXPECT_THAT(windowLengths(*mono, 0, kHuge), ElementsAre(44100, 44100, 11800));
    EXPECT_THAT(windowLengths(*stereo, 0, 100000), ElementsAre(22050, 22050, 22050, 22050, 11800));
    EXPECT_THAT(windowLengths(*mono, 55900, 44100), ElementsAre(44100));
    std::uint32_t count = 1;
    const auto list = stereo->retrieveWindowsAt(99999, &count);
    EXPECT_EQ(list[0].data, sharedSilence());
    EXPECT_EQ(list[0].format, 1);
    for (const std::uint32_t at : {100000u, kHuge}) {
        count = 5;
        EXPECT_EQ(mono->retrieveWindowsAt(at, &count), nullptr);
        EXPECT_EQ(count, 0u);
    }
    std::int32_t format = 7;
    count = 5;
    EXPECT_EQ(mono->retrieveWindowAt(0, &count, &format), nullptr);
    EXPECT_EQ(count, 5u);
    EXPECT_EQ(format, 7);
}

TEST(VornWaveBlock, neverReadsBehindItsSpanOrItsWave) {
    const auto wave = blockOf({1, 2, 3, 4, 5, 6}, 1)->waveOrNil();
    EXPECT_THAT(windowLengths(*VornWaveBlock::blockWithWave(wave, 2, 3), 1, kHuge), ElementsAre(2));
    EXPECT_THAT(windowLengths(*VornWaveBlock::blockWithWave(wave, 2, 3), 4, 9), ElementsAre(0));
    EXPECT_THAT(windowLengths(*VornWaveBlock::blockWithWave(wave, 4, 100), 0, 50), ElementsAre(2));
    const auto outside = VornWaveBlock::blockWithWave(wave, kHuge, kHuge);
    EXPECT_THAT(windowLengths(*outside, 9, kHuge), ElementsAre(0));
    EXPECT_EQ(outside->slice(5, kHuge)->startIndex(), kHuge);
    EXPECT_EQ(outside->slice(kHuge, 1)->frameCount(), 0u);
    std::vector<float> into(3, 9.f);
    EXPECT_EQ(VornWaveBlock::blockWithWave(wave, 4, 3)->write(3, into.data(), 1), 2u);
    EXPECT_THAT(into, ElementsAre(5, 6, 9));
}

TEST(VornWaveBlock, copiesTurnChannelsIntoOthers) {
    const auto stereo = blockOf({1, 2, 5, 6}, 2), mono = blockOf({3, 4}, 1);
    const struct {
        const VornWaveBlock& block;
        ExtractType type;
        std::uint32_t channels;
        std::vector<float> expected;
    } cases[] = {
        {*stereo, ExtractType::all, 1, {1.5, 5.5}},
        {*stereo, ExtractType::first, 1, {1, 5}},
        {*stereo, ExtractType::second, 1, {2, 6}},
        {*stereo, ExtractType::second, 2, {2, 2, 6, 6}},
        {*stereo, ExtractType::all, 2, {1, 2, 5, 6}},
        {*mono, ExtractType::all, 2, {3, 3, 4, 4}},
        {*mono, ExtractType::second, 1, {3, 4}},
        {*mono, ExtractType::first, 2, {3, 3, 4, 4}},
    };
    for (const auto& c : cases) {
        std::vector<float> into(c.expected.size());
        EXPECT_EQ(c.block.extract(2, c.type, into.data(), c.channels), 2u);
        EXPECT_EQ(into, c.expected);
    }
    Log::clear();
    std::vector<float> into(4);
    stereo->write(2, into.data(), 2);
    stereo->extract(2, ExtractType::first, into.data(), 1);
    stereo->write(2, into.data());
    EXPECT_THAT(Log::lines(),
                ElementsAre("WriteInto[2] start", "WriteInto[2] end", "ExtractInto[2->1] start",
                            "ExtractInto[1] end", "WriteInto start", "WriteInto end"));
}

TEST(VornWaveBlock, silenceGetsMemoryWhenItIsToBeWritten) {
    const auto block = VornWaveBlock::blockOfSilenceLength(3, 2, "folder");
    float* data = block->mutableData();
    ASSERT_NE(data, nullptr);
    data[5] = 7.f;
    EXPECT_FALSE(block->isSilence());
    EXPECT_EQ(block->waveOrNil()->folder(), "folder");
    EXPECT_TRUE(block->waveOrNil()->filename().starts_with("Untitled 0x"));
    std::vector<float> into(6);
    EXPECT_EQ(block->write(3, into.data()), 3u);
    EXPECT_THAT(into, ElementsAre(0, 0, 0, 0, 0, 7));
    EXPECT_EQ(blockOf({1}, 1)->mutableData(), nullptr);
}
