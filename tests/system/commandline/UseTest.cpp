// How the program is spoken to: help, and words that it does not understand.

#include "CommandLine.h"

using testing::HasSubstr;
using testing::IsEmpty;

TEST_F(CommandLine, helpsEverywhere) {
    const std::vector<std::pair<Program::Words, Program::Words>> cases{
        {{"--help"}, {"render", "play", "audition", "devices"}},
        {{"render", "--help"},
         {"--output", "--sound", "--preset", "--set", "--buffer-frames", "--seconds", "--seed",
          "--no-auto-gain", "--force", "--verbose"}},
        {{"live", "--help"},
         {"--device", "--sound", "--preset", "--set", "--record", "--network", "--controllers"}},
        {{"midi", "--help"}, {"--monitor", "--network", "--connect", "--seconds"}},
        {{"play", "--help"}, {"--device", "--sound", "--preset", "--set"}},
        {{"audition", "--help"},
         {"--from", "--loop", "--gain", "--scrub", "--pace", "--device", "--output", "--seconds"}},
        {{"devices", "--help"}, {"--json"}},
        {{"presets", "--help"},
         {"list", "show", "rename", "delete", "import", "export", "--output", "--force"}},
    };
    for (const auto& [words, told] : cases) {
        SCOPED_TRACE(testing::PrintToString(words));
        const Outcome outcome = run(words);
        EXPECT_EQ(outcome.exitCode, 0);
        EXPECT_THAT(outcome.err, IsEmpty());
        for (const std::string& word : told)
            EXPECT_THAT(outcome.out, HasSubstr(word));
    }
    EXPECT_EQ(run({"--version"}).exitCode, 0);
}

TEST_F(CommandLine, refusesWordsThatItDoesNotKnow) {
    const std::vector<Program::Words> cases{
        {"sing"},
        {"--loud"},
        {"render"},
        {"render", "song.mid"},
        {"render", "--output", "out.wav"},
        {"render", "song.mid", "--output"},
        {"render", "song.mid", "song.mid", "--output", "out.wav"},
        {"render", "song.mid", "--output", "out.wav", "--loud"},
        {"render", "song.mid", "--output", "out.wav", "--device", "clock"},
        {"render", "song.mid", "--output", "out.wav", "--force=yes"},
        {"play"},
        {"play", "song.mid", "--device", "gramophone"},
        {"play", "song.mid", "--output", "out.wav"},
        {"devices", "song.mid"},
        {"live", "song.mid"},
        {"live", "--output", "out.wav"},
        {"live", "--device", "gramophone"},
        {"midi", "keyboard"},
        {"midi", "--seconds", "3"},
        {"midi", "--monitor", "--seconds", "long"},
        {"midi", "--connect", ""},
        {"midi", "--connect", "host:port"},
    };
    for (const Program::Words& words : cases) {
        SCOPED_TRACE(testing::PrintToString(words));
        expectRefusal(run(words), 2);
    }
}

TEST_F(CommandLine, refusesNumbersOutsideTheirRange) {
    const std::vector<std::pair<std::string, Program::Words>> cases{
        {"--buffer-frames", {"0", "8193", "-1", "1.5", "many", "", "99999999999999999999"}},
        {"--seconds", {"-1", "nan", "inf", "1e99", "long", "", "1s"}},
        {"--seed", {"-1", "many", "", "1.5", "99999999999999999999"}},
    };
    for (const auto& [option, values] : cases) {
        for (const std::string& value : values) {
            SCOPED_TRACE(option + " '" + value + "'");
            expectRefusal(render({option, value}), 2);
        }
    }
}
