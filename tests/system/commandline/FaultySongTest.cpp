// Songs and settings that cannot be played.

#include <sys/stat.h>

#include <filesystem>

#include "CommandLine.h"
#include "Songs.h"

using testing::ContainsRegex;
using testing::HasSubstr;
using namespace songs;

namespace {

class FaultySong : public CommandLine {
  protected:
    Outcome play(const std::string& file) {
        return run({"render", file, "--output", "out.wav", "--sound", "Sine Wave"});
    }
};

}  // namespace

TEST_F(FaultySong, refusesWhatIsNoFile) {
    std::filesystem::create_directory(path("folder.mid"));
    ASSERT_EQ(mkfifo(path("pipe.mid").c_str(), 0600), 0);
    for (const char* name : {"none.mid", "folder.mid", "pipe.mid", "/dev/null", "/dev/zero"}) {
        SCOPED_TRACE(name);
        const Outcome outcome = play(name);
        EXPECT_EQ(outcome.exitCode, 2);
        EXPECT_THAT(outcome.err, IsOneLine());
        EXPECT_THAT(outcome.err, HasSubstr(name));
        EXPECT_FALSE(folder().contains("out.wav"));
    }
}

TEST_F(FaultySong, refusesEveryPieceOfAWholeSong) {
    const std::string whole = small();
    for (std::size_t length = 0; length < whole.size(); ++length) {
        SCOPED_TRACE(length);
        put("piece.mid", whole.substr(0, length));
        const Outcome outcome = play("piece.mid");
        expectRefusal(outcome, 2);
        EXPECT_THAT(outcome.err, HasSubstr("piece.mid"));
        EXPECT_THAT(outcome.err, ContainsRegex("byte [0-9]+"));
    }
}

TEST_F(FaultySong, saysAtWhichByteASongIsBroken) {
    const std::string track = chunk("MTrk", note(60, 20) + end());
    const std::vector<std::pair<std::string, std::string>> cases{
        {"garbage", std::string(1000, '?')},
        {"fewer tracks than declared", header(1, 2, 100) + track},
        {"an unknown chunk in place of a track", header(1, 2, 100) + track + chunk("XXXX", "1234")},
        {"no track at all", header(0, 1, 100)},
        {"division 0", header(0, 1, 0) + track},
        {"a track longer than the file", header(0, 1, 100) + chunk("MTrk", end(), 0x7fffffff)},
        {"a chunk longer than any file", header(0, 1, 100) + chunk("XXXX", "", 0xffffffff) + track},
        {"a data byte without a status",
         header(0, 1, 100) + chunk("MTrk", std::string{0, 60, 100} + end())},
        {"no End of Track", header(0, 1, 100) + chunk("MTrk", note(60, 20))},
        {"a meta event past its track",
         header(0, 1, 100) + chunk("MTrk", std::string{0, char(0xff), 1, 0x70, 'a'} + end())},
    };
    for (const auto& [name, bytes] : cases) {
        SCOPED_TRACE(name);
        put("broken.mid", bytes);
        const Outcome outcome = play("broken.mid");
        expectRefusal(outcome, 2);
        EXPECT_THAT(outcome.err, HasSubstr("broken.mid"));
        EXPECT_THAT(outcome.err, ContainsRegex("byte [0-9]+"));
    }
}

TEST_F(FaultySong, refusesSettingsThatNoPresetCanHold) {
    for (const std::string setting : {"loudness=1",      "grainSize",       "=1",
                                      "grainSize=",      "grainSize=big",   "grainSize=0.5x",
                                      "grainSize=nan",   "grainSize=inf",   "grainSize=1e999",
                                      "grainSize=1.01",  "preamp=1.26",     "grainSpeed=-2.1",
                                      "grainMotion=9",   "grainMotion=7",   "grainMotion=-1",
                                      "grainMotion=1.5", "syncSpeed=maybe", "syncSpeed=2",
                                      "echoDelay=2.1",   "adsrAttack=5.1",  "ringModFrequency=1761",
                                      "filterBass=1",    "filterBass=-1",   "name=x",
                                      "protected=true"}) {
        SCOPED_TRACE(setting);
        const Outcome outcome = render({"--set", setting});
        expectRefusal(outcome, 2);
        EXPECT_THAT(outcome.err, HasSubstr(setting.substr(0, setting.find('='))));
    }
}

TEST_F(FaultySong, refusesPresetsThatAreNone) {
    const auto list = [](const std::string& content) {
        return "<?xml version=\"1.0\"?><plist version=\"1.0\">" + content + "</plist>";
    };
    const auto dictionary = [&](const std::string& content) {
        return list("<dict>" + content + "</dict>");
    };
    std::string deep;
    for (int i = 0; i < 20; ++i)
        deep += "<array>";
    for (int i = 0; i < 20; ++i)
        deep += "</array>";
    const std::vector<std::pair<std::string, std::string>> cases{
        {"empty", ""},
        {"garbage", "grain grain grain"},
        {"an array", list("<array/>")},
        {"cut off", list("<dict>").substr(0, 50)},
        {"a text for a number", dictionary("<key>grainSize</key><string>big</string>")},
        {"no number", dictionary("<key>grainSize</key><real>12x</real>")},
        {"not finite", dictionary("<key>grainSize</key><real>nan</real>")},
        {"out of range", dictionary("<key>grainSize</key><real>2</real>")},
        {"grain mode 9", dictionary("<key>grainMotion</key><integer>9</integer>")},
        {"too deep", dictionary("<key>more</key>" + deep)},
        {"too large",
         dictionary("<key>name</key><string>" + std::string(5 << 20, 'x') + "</string>")},
    };
    for (const auto& [name, bytes] : cases) {
        SCOPED_TRACE(name);
        put("preset.plist", bytes);
        const Outcome outcome = render({"--preset", "preset.plist"});
        expectRefusal(outcome, 2);
        EXPECT_THAT(outcome.err, HasSubstr("preset.plist"));
    }
    expectRefusal(render({"--preset", "none.plist"}), 2);
    expectRefusal(render({"--preset", "/dev/zero"}), 2);
}
