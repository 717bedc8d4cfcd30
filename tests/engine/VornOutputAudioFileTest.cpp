#include "files/VornOutputAudioFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "ForeignReaders.h"
#include "ScratchFolder.h"
#include "SoundFiles.h"
#include "log/Log.h"

namespace fs = std::filesystem;

namespace {

/// Valid samples of either kind: floats of small whole numbers over 256.
std::string samplesFor(const StreamDescription& format, std::uint32_t frames) {
    std::vector<float> floats;
    std::vector<std::int16_t> integers;
    for (std::uint32_t i = 0; i < frames * format.mChannelsPerFrame; ++i) {
        integers.push_back(static_cast<std::int16_t>(i * 97));
        floats.push_back(static_cast<float>(integers.back()) / 32768.f);
    }
    return format.isFloat() ? SoundFiles::bytes(floats) : SoundFiles::bytes(integers);
}

std::string readBack(const std::string& path, StreamDescription* format) {
    VornAudioFile file(path);
    file.dataFormat(format);
    std::string bytes(file.byteCount(), 0);
    auto count = static_cast<std::uint32_t>(bytes.size());
    EXPECT_TRUE(file.ReadIntoBuffer(bytes.data(), &count));
    return bytes;
}

}  // namespace

TEST(VornOutputAudioFile, everyFormatOpensEverywhere) {
    const ScratchFolder folder;
    for (const bool floats : {false, true})
        for (const std::uint32_t channels : {1u, 2u}) {
            const auto format = floats ? StreamDescription::float32(channels, 48000)
                                       : StreamDescription::sint16(channels, 22050);
            const std::string path = folder.file("a.wav"), samples = samplesFor(format, 1001);
            SoundFiles::write(path, "what was there, and longer than nothing");
            auto stated = format;
            if (channels == 1)
                stated.mFormatFlags |= kAudioFormatFlagIsNonInterleaved;  // means nothing here
            VornOutputAudioFile file(path, kWaveFileType, stated);
            EXPECT_FALSE(file.variablePackets());
            // Out of order, by packets and by bytes; part of a packet is left out.
            const std::uint32_t size = file.packetSize();
            std::uint32_t bytes = 801 * size + 1;
            EXPECT_EQ(file.writePackets(&samples[200 * size], 200, &bytes, nullptr), 801u);
            EXPECT_EQ(bytes, 801 * size);
            bytes = 200 * size;
            EXPECT_TRUE(file.writeBytes(samples.data(), &bytes, 0));
            EXPECT_EQ(file.close(), noErr);

            StreamDescription found;
            EXPECT_EQ(readBack(path, &found), samples);
            EXPECT_EQ(found, format);
            for (const auto& reading : ForeignReaders::readAll(path, floats)) {
                EXPECT_TRUE(reading.opened) << reading.reader;
                EXPECT_TRUE(reading.samples == samples) << reading.reader << floats << channels;
            }
        }
}

TEST(VornOutputAudioFile, erasesOnlyWhatItReplaces) {
    const ScratchFolder folder;
    const std::string path = folder.file("a.wav"), other = folder.file("b.wav");
    SoundFiles::write(path, "old");
    fs::create_hard_link(path, other);
    Log::clear();
    EXPECT_EQ(VornOutputAudioFile(path, fourCC("AIFF"), StreamDescription::sint16(1)).status(),
              kAudioFileUnsupportedFileTypeError);
    auto wide = StreamDescription::sint16(1);
    wide.mBitsPerChannel = 24;
    EXPECT_EQ(VornOutputAudioFile(path, kWaveFileType, wide).status(),
              kAudioFileUnsupportedDataFormatError);
    EXPECT_EQ(fs::file_size(path), 3u);
    EXPECT_EQ(Log::lines().front(), "AU Error 1954115647 / 7479703f");
    VornOutputAudioFile(path, kWaveFileType, StreamDescription::sint16(1)).close();
    EXPECT_EQ(fs::file_size(path), 44u);
    EXPECT_EQ(fs::file_size(other), 3u);
}

TEST(VornOutputAudioFile, carriesOnWithoutAFile) {
    const ScratchFolder folder;
    VornOutputAudioFile file(folder.file("none/a.wav"), kWaveFileType,
                             StreamDescription::sint16(1));
    EXPECT_EQ(file.status(), kAudioFileFileNotFoundError);
    Log::clear();
    std::uint32_t bytes = 8;
    const char samples[8] = {};
    EXPECT_EQ(file.writePackets(samples, 0, &bytes, nullptr), 4u);
    EXPECT_EQ(bytes, 0u);
    EXPECT_FALSE(file.writeBytes(samples, &bytes, 0));
    EXPECT_EQ(file.close(), kAudioFileFileNotFoundError);
    EXPECT_THAT(Log::lines(),
                testing::ElementsAre("AU Error -38 / ffffffda", "AU Error -38 / ffffffda"));
    EXPECT_EQ(
        VornOutputAudioFile(folder.path(), kWaveFileType, StreamDescription::sint16(1)).status(),
        kAudioFileIsFolderError);
}

TEST(VornOutputAudioFile, endsWhereTheSizesOfItsKindEnd) {
    const ScratchFolder folder;
    const std::string path = folder.file("a.wav");
    VornOutputAudioFile file(path, kWaveFileType, StreamDescription::sint16(2));
    const std::vector<char> samples(400, 1);
    std::uint32_t bytes = 400;
    EXPECT_FALSE(file.writeBytes(samples.data(), &bytes, 0xffffff00));
    EXPECT_EQ(bytes, 216u);  // of 255 - 36, whole frames
    EXPECT_EQ(file.close(), kAudioFileTooLargeError);
    VornAudioFile again(path);
    EXPECT_EQ(again.packetCount(), 0xffffffd8u / 4);
    bytes = 8;
    std::int16_t last[4] = {};
    EXPECT_EQ(again.readPackets(last, 0xffffffd8u / 4 - 2, &bytes, nullptr), 2u);
    EXPECT_EQ(last[3], 0x101);
}

TEST(VornOutputAudioFileDeathTest, readingIsAnErrorOfTheProgram) {
    const ScratchFolder folder;
    VornOutputAudioFile file(folder.file("a.wav"), kWaveFileType, StreamDescription::sint16(1));
    char byte;
    std::uint32_t bytes = 1;
    EXPECT_DEATH(
        {
            Log::setVerbose(true);
            file.ReadIntoBuffer(&byte, &bytes);
        },
        "Can't read from an output file\n.*ReadIntoBuffer, Audio "
        "Common/Vornery/VornOutputAudioFile:40");
}
