// Files that are not what they say, or not there: one line each, no crash, no wait.

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <random>

#include "LoadedWave.h"
#include "ScratchFolder.h"
#include "SoundFiles.h"

namespace {

void expectRefused(const std::string& path, const std::string& reason) {
    SCOPED_TRACE(path);
    const LoadedWave wave(path);
    EXPECT_EQ(wave.frames, 0u);
    EXPECT_EQ(wave.wave->loadError(), path + " " + reason);
    EXPECT_EQ(wave.wave->bkgLoadState(), VornWave2::loaded);
    EXPECT_EQ(wave.wave->progress(), 1.f);
}

std::string garbage(std::size_t bytes) {
    std::minstd_rand generator(77);
    std::string text(bytes, 0);
    for (char& c : text)
        c = static_cast<char>(generator() >> 8);
    return text;
}

}  // namespace

TEST(SoundFileFaults, whatIsNoFileIsRefused) {
    ScratchFolder folder;
    const std::string pipe = folder.file("pipe.wav"), locked = folder.file("folder.wav");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    std::filesystem::create_directory(locked);
    expectRefused(pipe, "is a pipe or a device, not a sound file");
    expectRefused(locked, "is a folder, not a sound file");
    expectRefused("/dev/zero", "is a pipe or a device, not a sound file");
    expectRefused(folder.file("missing.wav"), "does not exist");
}

TEST(SoundFileFaults, garbageIsRefusedUnderEveryName) {
    // What a file begins with decides which reader gets to see the garbage behind it.
    const std::string heads[] = {"",
                                 "RIFF\x10\x20\0\0WAVEfmt ",
                                 "caff\0\1\0\0desc",
                                 "FORM\0\0\x10\x10"
                                 "AIFFCOMM",
                                 "\0\0\0\x20"
                                 "ftypM4A ",
                                 "\xff\xf1\x50\x80",
                                 "ID3\3\0\0\0\0\x0f\x0f",
                                 "fLaC",
                                 "OggS"};
    ScratchFolder folder;
    for (const char* extension : {"wav", "wave", "caf", "caff", "aif", "aiff", "m4a", "aac"}) {
        const std::string empty = folder.file(std::string("empty.") + extension);
        SoundFiles::write(empty, "");
        expectRefused(empty, "is empty");
        int number = 0;
        for (const std::string& head : heads) {
            const std::string path = folder.file(std::to_string(number++) + "." + extension);
            SoundFiles::write(path, head + garbage(5000));
            SCOPED_TRACE(path);
            const LoadedWave wave(path);
            EXPECT_EQ(wave.frames, 0u);
            EXPECT_NE(wave.wave->loadError(), "");
        }
    }
}

TEST(SoundFileFaults, headersAreNotBelieved) {
    ScratchFolder folder;
    const std::string data = garbage(2000);
    const auto file = [&](const char* name, const SoundFiles::WavShape& shape,
                          const std::string& sound) {
        SoundFiles::write(folder.file(name), SoundFiles::wav(shape, sound));
        return folder.file(name);
    };
    expectRefused(file("none.wav", {}, ""), "has no sound in it (0 frames)");
    expectRefused(file("half.wav", {}, "x"), "has no sound in it (0 frames)");
    expectRefused(file("one.wav", {.rate = 1}, data),
                  "has a sample rate of 1 Hz; 1000 to 1000000 can be played");
    expectRefused(file("fast.wav", {.rate = 10000000}, data),
                  "has a sample rate of 10000000 Hz; 1000 to 1000000 can be played");
    expectRefused(file("never.wav", {.rate = 0}, data),
                  "is damaged: no sound could be read from it");
    const std::string tooLong = "is longer than 20 minutes, which is the limit";
    expectRefused(file("long.wav", {.claim = 0x7fffffff}, data), tooLong);
    expectRefused(file("longest.wav", {.claim = 0xffffffff}, data), tooLong);
    expectRefused(file("minute.wav", {.rate = 8000, .claim = 2 * 8000 * 1201}, data), tooLong);
    // 2 TiB in 42 bytes.
    SoundFiles::write(
        folder.file("tebibytes.flac"),
        std::string("fLaC\0\0\0\x22\x10\0\x10\0\0\0\0\0\0\0\x0a\xc4\x40\xff\xff\xff\xff\xff", 26) +
            std::string(16, 0));
    expectRefused(folder.file("tebibytes.flac"), tooLong);
}

TEST(SoundFileFaults, aFileThatEndsEarlyPlaysWhatIsThere) {
    ScratchFolder folder;
    for (const char* name : {"cut.wav", "cut.aiff", "cut.caf"}) {
        SCOPED_TRACE(name);
        const auto samples = SoundFiles::noise(44100, 16);
        const std::string path = folder.file(name);
        ASSERT_TRUE(SoundFiles::ffmpegWrites(path, samples, 1, 44100, ""));
        std::filesystem::resize_file(path, std::filesystem::file_size(path) - 2 * 22050);
        const LoadedWave wave(path);
        EXPECT_EQ(wave.wave->loadError(), "");
        EXPECT_NEAR(wave.frames, 22050, 30);  // some containers end with a few words of their own
        EXPECT_EQ(wave.wave->loadNotice(),
                  path + " ends early: 0.50 s of 1.00 s are there and will play");
        for (std::size_t i = 0; i < wave.frames; ++i)
            ASSERT_EQ(wave.at(i), static_cast<float>(samples[i]));
    }
    const std::string piped = folder.file("piped.wav");
    ASSERT_TRUE(SoundFiles::runs("sh -c 'ffmpeg -f lavfi -i sine=duration=1 -f wav - | cat > " +
                                 piped + "'"));
    const LoadedWave stream(piped);  // its writer could not go back to say how long it is
    EXPECT_EQ(stream.frames, 44100u);
    EXPECT_EQ(stream.wave->loadNotice(), "");
}

TEST(SoundFileFaults, aFileCannotMakeTheProgramOpenAnother) {
    ScratchFolder folder;
    SoundFiles::write(folder.file("good.wav"), SoundFiles::wav({}, std::string(2000, 1)));
    SoundFiles::write(folder.file("list.wav"), "ffconcat version 1.0\nfile good.wav\n");
    SoundFiles::write(folder.file("list.m4a"), "#EXTM3U\n#EXTINF:1,\ngood.wav\n");
    expectRefused(folder.file("list.wav"), "is not a sound file of a known kind");
    expectRefused(folder.file("list.m4a"), "is not a sound file of a known kind");
}
