// Songs, sounds, settings and presets that cannot be played. Their readers have tests of their own;
// here is what becomes of that at the program's end.

#include <algorithm>
#include <filesystem>

#include "CommandLine.h"
#include "Sounds.h"

using testing::HasSubstr;

TEST_F(CommandLine, refusesWhatIsNoSongNoSoundAndNoPreset) {
    std::filesystem::create_directory(path("folder"));
    put("broken", "MThd");
    put("wild.plist", "<plist><dict><key>grainMotion</key><integer>9</integer></dict></plist>");
    const auto expectRefused = [this](const Outcome& outcome, const std::string& name) {
        SCOPED_TRACE(name);
        EXPECT_EQ(outcome.exitCode, 2);
        EXPECT_THAT(outcome.err, IsOneLine());
        EXPECT_THAT(outcome.err, HasSubstr(name));
        EXPECT_FALSE(folder().contains("out.wav"));
    };
    for (const std::string name : {"none", "folder", "broken", "/dev/zero"}) {
        expectRefused(run({"render", name, "--output", "out.wav"}), name);
        expectRefused(render({"--sound", name}), name);
        expectRefused(render({"--preset", name}), name);
    }
    expectRefused(render({"--preset", "wild.plist"}), "wild.plist");
    for (const std::string key : {"loudness=1", "grainSize", "grainSize=1.01", "grainMotion=9"})
        expectRefused(render({"--set", key}), key.substr(0, key.find('=')));
}

TEST_F(CommandLine, playsWhatIsThereOfASoundThatEndsEarly) {
    put("short.wav", sounds::tone(44100).substr(0, 44 + 40000));
    const Outcome outcome = render({"--sound", "short.wav"});
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_THAT(outcome.err, IsOneLine());
    EXPECT_THAT(outcome.err, HasSubstr("short.wav"));
    const auto samples = sounds::rendered(contentsOf(path("out.wav")));
    ASSERT_TRUE(samples);
    EXPECT_GT(*std::max_element(samples->begin(), samples->end()), 1000);
}
