// Sound files that cannot be played, or only in part.

#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <limits>

#include "CommandLine.h"
#include "Sounds.h"

using testing::AnyOf;
using testing::Each;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

class FaultySound : public CommandLine {
  protected:
    void expectRefused(const std::string& name) {
        SCOPED_TRACE(name);
        const Outcome outcome = render({"--sound", name});
        EXPECT_EQ(outcome.signal, 0);
        EXPECT_EQ(outcome.exitCode, 2);
        EXPECT_THAT(outcome.err, IsOneLine());
        EXPECT_THAT(outcome.err, HasSubstr(name));
        EXPECT_FALSE(folder().contains("out.wav"));
    }
};

}  // namespace

TEST_F(FaultySound, refusesWhatIsNoFile) {
    std::filesystem::create_directory(path("folder.wav"));
    ASSERT_EQ(mkfifo(path("pipe.wav").c_str(), 0600), 0);
    for (const char* name : {"none.wav", "No Such Wave", "folder.wav", "pipe.wav", "/dev/null",
                             "/dev/zero", "/dev/urandom"})
        expectRefused(name);
}

TEST_F(FaultySound, refusesGarbageUnderEveryExtension) {
    std::string noise;
    std::uint32_t state = 1;  // the seed
    for (int i = 0; i < 20000; ++i)
        noise += char((state = state * 1664525 + 1013904223) >> 24);
    const std::string playlist = "ffconcat version 1.0\nfile '/etc/hostname'\n";
    for (const char* extension : {"wav", "wave", "caf", "caff", "aif", "aiff", "m4a", "aac"}) {
        for (const std::string& bytes : {std::string(), std::string("x"), noise, playlist})
            expectRefused(put(std::string("garbage.") + extension, bytes));
    }
}

TEST_F(FaultySound, refusesHeadersThatMakeNoSound) {
    const std::string second = sounds::tone(44100).substr(44);
    const std::vector<std::pair<std::string, sounds::Wav>> cases{
        {"no-frames.wav", {}},
        {"rate-0.wav", {.rate = 0, .data = second}},
        {"rate-1.wav", {.rate = 1, .data = second}},
        {"rate-10M.wav", {.rate = 10000000, .data = second}},
        {"no-channels.wav", {.channels = 0, .data = second}},
        {"no-bits.wav", {.bits = 0, .data = second}},
    };
    for (const auto& [name, wav] : cases)
        expectRefused(put(name, sounds::bytesOf(wav)));
    expectRefused(put("header-only.wav", sounds::tone(44100).substr(0, 20)));
}

TEST_F(FaultySound, refusesASoundOfMoreThanTwentyMinutes) {
    constexpr std::uint32_t kBytes = 44100 * 2 * 1201;
    put("long.wav", sounds::bytesOf({.claimed = kBytes}));
    std::filesystem::resize_file(path("long.wav"), 44 + kBytes);  // sparse
    expectRefused("long.wav");
}

TEST_F(FaultySound, neverTrustsTheLengthInAHeader) {
    put("boast.wav", sounds::bytesOf({.data = std::string(2000, 'x'), .claimed = 0x7fffff00}));
    const Outcome outcome = render({"--sound", "boast.wav"});
    EXPECT_THAT(outcome.exitCode, AnyOf(0, 2));
    EXPECT_THAT(outcome.err, IsOneLine());
}

TEST_F(FaultySound, playsWhatIsThereOfAFileThatEndsEarly) {
    put("short.wav", sounds::tone(44100).substr(0, 44 + 40000));
    const Outcome outcome = render({"--sound", "short.wav"});
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_THAT(outcome.err, IsOneLine());
    EXPECT_THAT(outcome.err, HasSubstr("short.wav"));
    const auto samples = sounds::rendered(contents(path("out.wav")));
    ASSERT_TRUE(samples);
    EXPECT_GT(*std::max_element(samples->begin(), samples->end()), 1000);
}

TEST_F(FaultySound, takesSamplesThatAreNoNumbersAsSilence) {
    sounds::Wav wav{.bits = 32, .tag = 3};
    for (int i = 0; i < 44100; ++i)
        wav.data += std::string{0, 0, char(0xc0), 0x7f};  // a quiet NaN
    put("nan.wav", sounds::bytesOf(wav));
    const Outcome outcome = render({"--sound", "nan.wav"});
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_THAT(outcome.err, IsEmpty());
    const auto samples = sounds::rendered(contents(path("out.wav")));
    ASSERT_TRUE(samples);
    EXPECT_THAT(*samples, Each(0));
}
