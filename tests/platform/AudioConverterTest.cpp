#include "audiofiles/AudioConverter.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

namespace {

/// Interleaved samples of any format, handed out in pieces of `piece` frames.
struct Input {
    std::vector<char> bytes;
    std::size_t frameBytes;
    std::size_t piece;
    std::size_t at = 0;
    OSStatus failure = noErr;

    template <typename Sample>
    Input(const std::vector<Sample>& samples, std::size_t channels, std::size_t frames)
        : bytes(reinterpret_cast<const char*>(samples.data()),
                reinterpret_cast<const char*>(samples.data() + samples.size())),
          frameBytes(sizeof(Sample) * channels),
          piece(frames) {}

    static OSStatus supply(AudioConverterRef, std::uint32_t* ioPackets, AudioBufferList* ioData,
                           AudioStreamPacketDescription**, void* userData) {
        auto& self = *static_cast<Input*>(userData);
        const std::size_t frames = std::min(
            {self.piece, std::size_t{*ioPackets}, (self.bytes.size() - self.at) / self.frameBytes});
        *ioData = AudioBufferList::single(self.bytes.data() + self.at, 0,
                                          static_cast<std::uint32_t>(frames * self.frameBytes));
        *ioPackets = static_cast<std::uint32_t>(frames);
        self.at += frames * self.frameBytes;
        return self.failure;
    }
};

template <typename Sample>
std::vector<Sample> converted(Input input, const StreamDescription& source,
                              const StreamDescription& target, std::uint32_t askedAtOnce = 1000) {
    AudioConverterRef converter = nullptr;
    EXPECT_EQ(AudioConverterNew(&source, &target, &converter), noErr);
    std::vector<Sample> result, block(askedAtOnce * target.mChannelsPerFrame);
    for (std::uint32_t frames = askedAtOnce; converter && frames == askedAtOnce;) {
        AudioBufferList list =
            AudioBufferList::single(block.data(), target.mChannelsPerFrame,
                                    static_cast<std::uint32_t>(block.size() * sizeof(Sample)));
        EXPECT_EQ(AudioConverterFillComplexBuffer(converter, Input::supply, &input, &frames, &list,
                                                  nullptr),
                  noErr);
        result.insert(result.end(), block.begin(),
                      block.begin() + frames * target.mChannelsPerFrame);
    }
    if (converter)
        AudioConverterDispose(converter);
    return result;
}

}  // namespace

TEST(AudioConverter, roundsToNearestEvenAndSaturates) {
    struct Row {
        double in;  // in units of the last of 16 bits
        int out;
    };
    const Row rows[] = {{0.5, 0},         {1.5, 2},       {2.5, 2},           {-0.5, 0},
                        {-1.5, -2},       {0.4999, 0},    {0.5001, 1},        {32766.5, 32766},
                        {32767.5, 32767}, {40000, 32767}, {-32768.5, -32768}, {-1e9, -32768},
                        {NAN, 0},         {INFINITY, 0},  {-INFINITY, 0},     {1e30, 32767}};
    std::vector<float> floats;
    std::vector<double> doubles;
    for (const Row& row : rows) {
        floats.push_back(static_cast<float>(row.in / 32768));
        doubles.push_back(row.in / 32768);
    }
    StreamDescription source64 = StreamDescription::float32(1);
    source64.mBitsPerChannel = 64;
    source64.mBytesPerFrame = source64.mBytesPerPacket = 8;
    const auto target = StreamDescription::sint16(1);
    const auto fromFloats =
        converted<std::int16_t>(Input(floats, 1, 3), StreamDescription::float32(1), target);
    const auto fromDoubles = converted<std::int16_t>(Input(doubles, 1, 3), source64, target);
    ASSERT_EQ(fromFloats.size(), std::size(rows));
    ASSERT_EQ(fromDoubles.size(), std::size(rows));
    for (std::size_t i = 0; i < std::size(rows); ++i) {
        EXPECT_EQ(fromFloats[i], rows[i].out) << rows[i].in;
        EXPECT_EQ(fromDoubles[i], rows[i].out) << rows[i].in;
    }
    // A double or 32-bit integer just beside a tie is rounded once, not by way of a float.
    const auto beside = converted<std::int16_t>(
        Input(std::vector<double>{(20001.5 - 1e-6) / 32768}, 1, 1), source64, target);
    EXPECT_EQ(beside, std::vector<std::int16_t>{20001});
}

TEST(AudioConverter, resultsDoNotDependOnTheSizeOfThePieces) {
    std::vector<std::int16_t> samples(2 * 5000);
    for (std::size_t i = 0; i < samples.size(); ++i)
        samples[i] = static_cast<std::int16_t>(i * i * 31);
    const auto source = StreamDescription::sint16(2, 48000), target = StreamDescription::sint16(2);
    const auto whole = converted<std::int16_t>(Input(samples, 2, 5000), source, target, 100000);
    EXPECT_NEAR(static_cast<double>(whole.size()) / 2, 5000 * 44100.0 / 48000, 2);
    for (const std::size_t piece : {1u, 7u, 4095u})
        EXPECT_EQ(converted<std::int16_t>(Input(samples, 2, piece), source, target, 333), whole)
            << piece;
}

TEST(AudioConverter, channelsDoNotLeakIntoEachOther) {
    std::vector<float> samples(2 * 4000, 0.f);
    for (std::size_t i = 0; i < 4000; ++i)
        samples[2 * i] = static_cast<float>(0.5 * std::sin(static_cast<double>(i) * 0.1));
    const auto result = converted<std::int16_t>(
        Input(samples, 2, 512), StreamDescription::float32(2, 22050), StreamDescription::sint16(2));
    ASSERT_EQ(result.size(), 2u * 8000);
    int loudest = 0;
    for (std::size_t i = 0; i < result.size(); i += 2) {
        loudest = std::max(loudest, std::abs(result[i]));
        ASSERT_EQ(result[i + 1], 0);
    }
    EXPECT_NEAR(loudest, 16384, 200);
}

TEST(AudioConverter, refusesWhatItCannotDoAndHandsFailuresOn) {
    AudioConverterRef converter = nullptr;
    const auto good = StreamDescription::sint16(1);
    StreamDescription odd = good;
    odd.mBitsPerChannel = 13;
    EXPECT_EQ(AudioConverterNew(&odd, &good, &converter), kAudioConverterErr_FormatNotSupported);
    const auto still = StreamDescription::sint16(1, 0.0);
    EXPECT_EQ(AudioConverterNew(&still, &good, &converter),
              kAudioConverterErr_OutputSampleRateOutOfRange);
    EXPECT_EQ(converter, nullptr);

    Input failing(std::vector<std::int16_t>(10), 1, 10);
    failing.failure = kAudioFileInvalidFileError;
    ASSERT_EQ(AudioConverterNew(&good, &good, &converter), noErr);
    std::int16_t place[4];
    AudioBufferList list = AudioBufferList::single(place, 1, sizeof(place));
    std::uint32_t frames = 4;
    EXPECT_EQ(AudioConverterFillComplexBuffer(converter, Input::supply, &failing, &frames, &list,
                                              nullptr),
              kAudioFileInvalidFileError);
    EXPECT_EQ(AudioConverterDispose(converter), noErr);
}
