// `ombrix presets`, as a user goes through it, and where it cannot be done.

#include <sys/mount.h>

#include <filesystem>
#include <list>

#include "Bundles.h"
#include "CommandLine.h"
#include "SmallDisk.h"
#include "SoundFiles.h"

using testing::AnyOf;
using testing::ContainsRegex;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace {

const char* const kDrop =
    "<plist version=\"1.0\"><dict><key>name</key><string>Drop</string>"
    "<key>wave</key><string>user/Drop.wav</string><key>grainSize</key><real>0.25</real>"
    "<key>grainMotion</key><integer>5</integer><key>glow</key><true/></dict></plist>";

class PresetsCommand : public CommandLine {
  protected:
    PresetsCommand() { keepDataIn(home() + "/data"); }

    void keepDataIn(const std::string& folder) {
        m_data = folder;
        m_surroundings.environment["OMBRIX_DATA"] = folder;
    }
    Outcome presets(Program::Words words) const {
        words.insert(words.begin(), "presets");
        return run(words);
    }
    /// What it says when all goes well.
    std::string done(const Program::Words& words) const {
        const Outcome outcome = presets(words);
        EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
        EXPECT_THAT(outcome.err, IsEmpty());
        return outcome.out;
    }
    std::set<std::string> dataFolder() const {
        std::set<std::string> names;
        std::error_code missing;
        for (const auto& entry : std::filesystem::directory_iterator(m_data, missing))
            names.insert(entry.path().filename());
        names.erase(".presets.lock");
        names.erase("presets.plist.bak");
        return names;
    }
    void putDrop() const {
        std::filesystem::create_directories(m_data);
        SoundFiles::write(m_data + "/Drop.wav", SoundFiles::wav({}, std::string(20000, '\x11')));
        put("drop.plist", kDrop);
    }

    std::string m_data;
};

}  // namespace

TEST_F(PresetsCommand, listsShowsRenamesExportsDeletesAndImports) {
    done({});
    EXPECT_FALSE(std::filesystem::exists(m_data));  // looking makes nothing
    putDrop();
    EXPECT_EQ(done({"import", "drop.plist"}), "Drop\n");
    EXPECT_THAT(done({}), HasSubstr("  Drop"));
    EXPECT_THAT(done({"--json"}), HasSubstr("\"wave\": \"user/Drop.wav\""));
    EXPECT_THAT(done({"show", " drop "}), ContainsRegex("grainMotion +5 +Scrambly"));

    EXPECT_EQ(done({"rename", "drop", "Wet: drop"}), "");
    EXPECT_EQ(done({"export", "wet: DROP"}), "Wet_ drop.ombrix\n");
    EXPECT_EQ(done({"export", "wet: drop", "--output", "other.ombrix"}), "other.ombrix\n");
    const std::string before = done({"show", "Wet: drop", "--json"});
    EXPECT_THAT(before, HasSubstr("\"glow\": true"));
    const std::string sound = contentsOf(m_data + "/Drop.wav");
    ASSERT_TRUE(SoundFiles::runs("cd '" + path("") +
                                 "' && python3 -m zipfile -e other.ombrix out && "
                                 "cmp out/Drop.wav '" +
                                 m_data +
                                 "/Drop.wav' && grep -q '<key>glow</key>' out/preset.plist"));

    EXPECT_EQ(done({"delete", "Wet: drop"}), "");
    EXPECT_THAT(done({}), Not(HasSubstr("drop")));
    EXPECT_TRUE(dataFolder().contains("Drop.wav"));
    keepDataIn(home() + "/of/another user");
    EXPECT_EQ(done({"import", "other.ombrix"}), "Wet: drop\n");
    EXPECT_EQ(done({"show", "wet: drop", "--json"}), before);
    EXPECT_EQ(contentsOf(m_data + "/Drop.wav"), sound);
}

TEST_F(PresetsCommand, refusesInOneLine) {
    putDrop();
    put("wild.plist", "<plist><dict><key>wave</key><string>../x</string></dict></plist>");
    put("noise.ombrix", "noise");
    put("there.ombrix", "precious");
    done({"import", "drop.plist"});
    const auto before = dataFolder();
    const std::vector<Program::Words> cases{
        {"sing"},
        {"list", "more"},
        {"list", "--force"},
        {"show"},
        {"show", "none"},
        {"rename", "drop"},
        {"rename", "none", "some"},
        {"rename", "drop", " "},
        {"delete"},
        {"delete", "none"},
        {"delete", "drop", "--json"},
        {"import"},
        {"import", "none.ombrix"},
        {"import", "noise.ombrix"},
        {"import", "wild.plist"},
        {"import", "."},
        {"import", "song.mid"},
        {"export"},
        {"export", "none"},
        {"export", "drop", "--output", ""},
        {"export", "drop", "--output", "there.ombrix"},
        {"export", "drop", "--output", ".", "--force"},
    };
    for (const Program::Words& words : cases) {
        SCOPED_TRACE(testing::PrintToString(words));
        expectRefusal(presets(words), 2);
        EXPECT_EQ(dataFolder(), before);
    }
    EXPECT_EQ(contentsOf(path("there.ombrix")), "precious");
    // What can be taken in is, beside what cannot.
    const Outcome mixed = presets({"import", "noise.ombrix", "drop.plist"});
    EXPECT_EQ(mixed.exitCode, 2);
    EXPECT_EQ(mixed.out, "Drop 2\n");
    EXPECT_EQ(done({"export", "drop", "--output", "there.ombrix", "--force"}), "there.ombrix\n");
    EXPECT_THAT(contentsOf(path("there.ombrix")), testing::StartsWith("PK"));
}

TEST_F(PresetsCommand, leavesNothingHalfDoneWhereItCannotWrite) {
    putDrop();
    done({"import", "drop.plist"});
    ASSERT_TRUE(Bundles::make(path(""), "good"));
    done({"export", "drop", "--output", "drop.ombrix"});
    const SmallDisk full(path("full"), 0, "8k");
    SmallDisk readOnly(path("read-only"), MS_RDONLY);
    if (!full.there() || !readOnly.there())
        GTEST_SKIP() << "this account may not mount";
    const auto fails = [&](const Program::Words& words) {
        SCOPED_TRACE(testing::PrintToString(words) + " with " + m_data);
        const auto before = dataFolder();
        const Outcome outcome = presets(words);
        EXPECT_EQ(outcome.exitCode, 1);
        EXPECT_THAT(outcome.err, IsOneLine());
        EXPECT_EQ(dataFolder(), before);
    };
    fails({"export", "drop", "--output", "read-only/x.ombrix"});
    fails({"export", "drop", "--output", "no/such/folder/x.ombrix"});
    m_surroundings.largestFile = 500;  // neither bundle nor store fits
    fails({"export", "drop", "--output", "x.ombrix"});
    fails({"rename", "drop", "drip"});
    fails({"import", "good.ombrix"});  // its sound fits, the store with it does not
    m_surroundings.largestFile.reset();
    EXPECT_FALSE(std::filesystem::exists(path("x.ombrix")));
    keepDataIn(path("full"));
    fails({"import", "drop.ombrix"});
    keepDataIn(path("read-only"));
    fails({"import", "drop.ombrix"});
}

TEST_F(PresetsCommand, keepsThePresetsOfAllWhoImportAtOnce) {
    ASSERT_TRUE(Bundles::make(path(""), "good"));
    std::list<Program> programs;
    for (int i = 0; i < 6; ++i)
        programs.emplace_back(Program::Words{"presets", "import", "good.ombrix"}, m_surroundings);
    std::set<std::string> names;
    for (Program& program : programs) {
        EXPECT_EQ(program.wait().exitCode, 0) << program.wait().err;
        names.insert(program.wait().out);
    }
    EXPECT_EQ(names.size(), 6u);
    for (const std::string& name : names)
        EXPECT_THAT(done({"show", name}), HasSubstr("Chime"));
}
