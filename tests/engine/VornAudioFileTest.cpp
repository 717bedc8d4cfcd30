#include "files/VornAudioFile.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "ScratchFolder.h"
#include "SoundFiles.h"
#include "files/SoundFileExtensions.h"
#include "log/Log.h"

TEST(VornAudioFile, readsPacketsFromAnywhere) {
    ScratchFolder folder;
    std::vector<std::int16_t> samples(2 * 1000);
    for (std::size_t i = 0; i < samples.size(); ++i)
        samples[i] = static_cast<std::int16_t>(i);
    // A chunk behind the sound is none of it.
    SoundFiles::write(folder.file("a.wav"),
                      SoundFiles::wav({.rate = 8000, .channels = 2}, SoundFiles::bytes(samples)) +
                          std::string("LIST\4\0\0\0abcd", 12));
    VornAudioFile file(folder.file("a.wav"));
    StreamDescription format;
    file.dataFormat(&format);
    EXPECT_EQ(format, StreamDescription::sint16(2, 8000));
    EXPECT_EQ(file.packetCount(), 1000u);
    EXPECT_EQ(file.byteCount(), 4000u);
    EXPECT_EQ(file.packetSize(), 4u);
    EXPECT_FALSE(file.variablePackets());

    std::vector<std::int16_t> got(2 * 1000, -1);
    for (const std::uint32_t start : {900u, 0u, 999u, 50u}) {
        std::uint32_t bytes = 403;
        const std::uint32_t packets = file.readPackets(got.data(), start, &bytes, nullptr);
        ASSERT_EQ(packets, std::min(100u, 1000u - start));
        EXPECT_EQ(bytes, packets * 4);
        EXPECT_TRUE(
            std::equal(got.begin(), got.begin() + packets * 2, samples.begin() + start * 2));
    }
    std::uint32_t bytes = 4000;
    EXPECT_TRUE(file.ReadIntoBuffer(got.data(), &bytes));
    EXPECT_EQ(got, samples);
    std::fill(got.begin(), got.end(), -1);
    bytes = 6;  // part of a packet
    EXPECT_TRUE(file.ReadIntoBuffer(got.data(), &bytes));
    EXPECT_EQ(bytes, 6u);
    EXPECT_EQ(got[2], 2);
    EXPECT_EQ(got[3], -1);
    bytes = 8;
    EXPECT_EQ(file.readPackets(got.data(), 1000, &bytes, nullptr), 0u);
}

TEST(VornAudioFile, packetsOfCompressedFilesVary) {
    ScratchFolder folder;
    ASSERT_TRUE(SoundFiles::ffmpegWrites(folder.file("a.m4a"), SoundFiles::noise(88200, 16), 2,
                                         44100, "-c:a alac"));
    VornAudioFile file(folder.file("a.m4a"));
    EXPECT_TRUE(file.variablePackets());
    ASSERT_GT(file.packetSize(), 0u);
    std::vector<char> first(file.packetSize() * 100), again(first.size());
    std::vector<AudioStreamPacketDescription> descriptions(100);
    auto bytes = static_cast<std::uint32_t>(first.size());
    ASSERT_EQ(file.readPackets(first.data(), 20000, &bytes, descriptions.data()), 100u);
    EXPECT_EQ(descriptions[99].mStartOffset, 99 * std::int64_t{file.packetSize()});
    ASSERT_EQ(file.readPackets(again.data(), 0, &bytes, nullptr), 100u);
    EXPECT_NE(first, again);
    ASSERT_EQ(file.readPackets(again.data(), 20000, &bytes, nullptr), 100u);
    EXPECT_EQ(first, again);
}

TEST(VornAudioFile, withoutAFileEverythingIsNothing) {
    Log::clear();
    VornAudioFile file("/nowhere/at/all.wav");
    EXPECT_EQ(file.status(), kAudioFileFileNotFoundError);
    EXPECT_EQ(Log::lines().front(), "AU Error -43 / ffffffd5");
    EXPECT_EQ(file.packetCount(), 0u);
    char byte = 5;
    std::uint32_t bytes = 1;
    EXPECT_EQ(file.readPackets(&byte, 0, &bytes, nullptr), 0u);
    bytes = 1;
    EXPECT_FALSE(file.ReadIntoBuffer(&byte, &bytes));
    EXPECT_EQ(byte, 5);
}

TEST(SoundFileExtensions, areComparedAsTheyStand) {
    for (const char* known : {"wav", "wave", "caf", "caff", "aif", "aiff", "m4a", "aac"})
        EXPECT_TRUE(isSoundFileExtension(known));
    for (const char* unknown : {"WAV", "", "mp3", ".wav", "wa"})
        EXPECT_FALSE(isSoundFileExtension(unknown));
}
