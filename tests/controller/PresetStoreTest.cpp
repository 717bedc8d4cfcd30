#include "parameters/PresetStore.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "Contents.h"
#include "ScratchFolder.h"
#include "parameters/PresetNames.h"
#include "propertylists/PropertyList.h"

namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using enum ParameterId;

class PresetStoreTest : public testing::Test {
  protected:
    PresetStore open() {
        m_told.clear();
        return PresetStore(m_path, m_folder.file("shipped.plist"), [this](const std::string& line) {
            EXPECT_EQ(line.find('\n'), line.npos);
            m_told.push_back(line);
        });
    }

    void put(const std::string& name, const std::string& content) {
        std::ofstream(m_folder.file(name), std::ios::binary) << content;
    }

    /// A store of XML entries.
    void putStore(const std::string& entries) {
        put("presets.plist", "<plist version=\"1.0\"><dict>" + entries + "</dict></plist>");
    }

    std::string content(const std::string& name) { return contentsOf(m_folder.file(name)); }

    int filesLike(const std::string& part) {
        int found = 0;
        for (const auto& entry : std::filesystem::directory_iterator(m_folder.path()))
            found += entry.path().filename().string().find(part) != std::string::npos;
        return found;
    }

    ScratchFolder m_folder;
    std::string m_path = m_folder.file("presets.plist");
    std::vector<std::string> m_told;
};

std::string entry(const std::string& key, const std::string& values) {
    return "<key>" + key + "</key><dict>" + values + "</dict>";
}

std::string named(const std::string& name, const std::string& values = "") {
    return entry(PresetNames::keyOf(name), "<key>name</key><string>" + name + "</string>" + values);
}

std::string value(const std::string& key, const std::string& xml) {
    return "<key>" + key + "</key>" + xml;
}

std::string nested(int depth) {
    std::string xml;
    for (int i = 0; i < depth; ++i)
        xml += "<dict><key>a</key>";
    xml += "<true/>";
    for (int i = 0; i < depth; ++i)
        xml += "</dict>";
    return xml;
}

std::string many(int count) {
    std::string xml;
    for (int i = 0; i < count; ++i)
        xml += entry(std::to_string(i), "");
    return xml;
}

Preset presetOf(const std::string& name) {
    Preset preset;
    preset.name = name;
    return preset;
}

}  // namespace

TEST_F(PresetStoreTest, startsFromTheShippedPresetsAndFindsNamesHoweverTheyAreWritten) {
    put("shipped.plist", "<plist version=\"1.0\"><dict>" +
                             named("Default Sound", value("protected", "<true/>")) +
                             "</dict></plist>");
    PresetStore store = open();
    EXPECT_EQ(store.save(presetOf("  Glöckchen ÀÉ\n")), "");
    EXPECT_EQ(store.hasPresetWithName("GLÖCKCHEN àé\t"), 1);
    EXPECT_EQ(store.hasPresetWithName("\u00a0default SOUND "), -1);
    EXPECT_EQ(store.hasPresetWithName("Glockchen"), 0);
    EXPECT_EQ(open().find("glöckchen àé")->name, "Glöckchen ÀÉ");
    EXPECT_EQ(open().presets().size(), 2u);

    EXPECT_THAT(store.remove("Default Sound"), HasSubstr("protected"));
    EXPECT_THAT(store.rename("default sound", "Mine"), HasSubstr("protected"));
    EXPECT_THAT(store.rename("Glöckchen ÀÉ", "DEFAULT SOUND"), HasSubstr("already"));
    EXPECT_EQ(store.rename("glöckchen àé", "GLÖCKCHEN ÀÉ"), "");
    EXPECT_EQ(open().find("glöckchen àé")->name, "GLÖCKCHEN ÀÉ");
    EXPECT_EQ(store.remove("glöckchen àé"), "");
    EXPECT_THAT(store.remove("glöckchen àé"), HasSubstr("none of this name"));

    for (const std::string bad : {"", " \n", "a\x01z", "\xff", "line\nbreak", "a\u2028z"})
        EXPECT_THAT(store.save(presetOf(bad)), AllOf(Not(""), Not(HasSubstr("\n")))) << bad;
    EXPECT_NE(store.save(presetOf(std::string(1001, 'x'))), "");
    EXPECT_EQ(store.save(presetOf(std::string(1000, 'x'))), "");
    for (const std::string bad :
         {"..", "a..b.wav", "a/b", "user/../b", "internal/a/b", "a\\b", "", "user/"})
        EXPECT_NE(PresetNames::waveFault(bad), "") << bad;
    for (const std::string good : {"a b.wav", "user/x.wav", "internal/ü.wav", "generated/sine"})
        EXPECT_EQ(PresetNames::waveFault(good), "") << good;
    EXPECT_NE(PresetNames::waveFault(std::string(256, 'x')), "");
    for (const std::string name : {"...", ".a/b\\c..", "Oh no..."})
        EXPECT_EQ(PresetNames::fileFault(PresetNames::fileNameFor(name)), "") << name;
}

TEST_F(PresetStoreTest, repairsEachValueByItself) {
    const std::tuple<const char*, const char*, float> table[] = {
        {"grainSpeed", "<real>nan</real>", 1.f},
        {"grainSpeed", "<real>-inf</real>", 1.f},
        {"grainSpeed", "<integer>99999999999999999999999</integer>", 2.f},
        {"grainSpeed", "<real>-1e300</real>", -2.f},
        {"grainSize", "<string>0.25</string>", 0.5f},
        {"grainSize", "<real>0,25</real>", 0.5f},
        {"preamp", "<array/>", 1.f},
        {"filterBass", "<real>-1</real>", 1.f / 44100.f},
        {"filterBass", "<true/>", kDefaultFilterBass},
        {"adsrAttack", "<real>5.001</real>", 5.f},
        {"adsrRelease", "<date>1</date>", 0.02f},
    };
    for (const auto& [key, xml, repaired] : table) {
        SCOPED_TRACE(std::string(key) + ' ' + xml);
        putStore(named("Good", value("grainSize", "<real>0.75</real>")) +
                 named("Bad", value(key, xml) + value("echoFeedback", "<real>0.125</real>")));
        const PresetStore store = open();
        ASSERT_EQ(store.presets().size(), 2u);
        const Preset& bad = *store.find("bad");
        EXPECT_EQ(bad.number(parameterWithKey(key)->id), repaired);
        EXPECT_EQ(bad.number(echoFeedback), 0.125f);
        EXPECT_EQ(store.find("good")->number(grainSize), 0.75f);
        EXPECT_THAT(m_told, ElementsAre(AllOf(HasSubstr("\"Bad\": " + std::string(key)),
                                              HasSubstr("is used"))));
    }
    for (const char* mode : {"-1", "7", "2000000000"}) {
        putStore(
            named("Bad", value("grainMotion", std::string("<integer>") + mode + "</integer>")));
        EXPECT_EQ(open().find("bad")->grainMotion, 1);
    }
    putStore(named("Bad", value("wave", "<string>../x</string>") + value("grainSize", "<true/>")));
    PresetStore store = open();
    EXPECT_FALSE(store.find("bad")->wave);
    EXPECT_EQ(m_told.size(), 2u);
    ASSERT_EQ(store.save(presetOf("Other")), "");
    EXPECT_EQ(m_told.size(), 2u);  // each once, though the file was read again
    open();
    EXPECT_TRUE(m_told.empty());
}

TEST_F(PresetStoreTest, keepsWhatItDoesNotKnow) {
    const std::string unknown = value("colour", "<string>blue</string>") + value("tree", nested(5));
    putStore(named("Old", unknown) + value("version", "<integer>9</integer>") +
             entry("stray", value("name", "<string>Elsewhere</string>") + unknown) +
             entry("nameless", unknown) +
             entry("twin", value("name", "<string>Old</string>") + unknown));
    PresetStore store = open();
    ASSERT_EQ(store.save(presetOf("New")), "");
    std::string error;
    const auto list = PropertyList::readFile(m_path, error);
    ASSERT_TRUE(list) << error;
    const auto& entries = *list->dictionary();
    EXPECT_EQ(*entries.at("version").integer(), 9);
    for (const char* key : {"old", "elsewhere", "nameless", "twin"}) {
        ASSERT_TRUE(entries.contains(key)) << key;
        const auto& preset = *entries.at(key).dictionary();
        EXPECT_EQ(PresetNames::keyOf(*preset.at("name").string()), key);
        EXPECT_EQ(*preset.at("colour").string(), "blue");
        EXPECT_TRUE(preset.at("tree").dictionary());
    }
}

TEST_F(PresetStoreTest, setsAsideWhatHoldsNoPresetsAndUsesTheBackup) {
    const std::pair<const char*, std::string> hostile[] = {
        {"garbage", std::string("\0\xff\x13<<plist", 10)},
        {"empty", ""},
        {"cut off", "<plist><dict><key>a</key><dict><key>name"},
        {"entity bomb",
         "<!DOCTYPE p [<!ENTITY a \"aaaa\"><!ENTITY b \"&a;&a;\">]>"
         "<plist><dict><key>&b;</key><true/></dict></plist>"},
        {"deep", "<plist>" + nested(100000) + "</plist>"},
        {"array", "<plist><array/></plist>"},
        {"too many", "<plist><dict>" + many(10001) + "</dict></plist>"},
        {"too large", "<plist><dict>" + std::string(5 << 20, ' ') + "</dict></plist>"},
        {"a million keys",
         [] {
             std::string xml = "<plist><dict>";
             for (int i = 0; i < 1000000; ++i)
                 xml += "<key>" + std::to_string(i) + "</key><true/>";
             return xml + "</dict></plist>";
         }()},
    };
    int aside = 0;
    for (const auto& [what, bytes] : hostile) {
        SCOPED_TRACE(what);
        putStore(named("Kept"));
        put("presets.plist.bak", content("presets.plist"));
        put("presets.plist", bytes);
        PresetStore store = open();
        EXPECT_EQ(store.presets().size(), 1u);
        EXPECT_THAT(m_told,
                    ElementsAre(AllOf(HasSubstr("set aside"), HasSubstr("backup is used"))));
        EXPECT_EQ(filesLike("presets.plist.corrupt-"), ++aside);
        EXPECT_EQ(store.save(presetOf("More")), "");
        EXPECT_EQ(open().presets().size(), 2u);
        EXPECT_TRUE(m_told.empty());
    }
    // The first that was set aside is still what it was.
    for (const auto& file : std::filesystem::directory_iterator(m_folder.path())) {
        const std::string name = file.path().filename().string();
        if (name.find(".corrupt-") != name.npos && name.find(' ') == name.npos) {
            EXPECT_EQ(content(name), hostile[0].second);
        }
    }
}

TEST_F(PresetStoreTest, leavesAloneWhatItCannotOpen) {
    std::filesystem::create_directory(m_path);
    PresetStore store = open();
    EXPECT_THAT(m_told, ElementsAre(HasSubstr("is a folder")));
    EXPECT_THAT(store.save(presetOf("New")), HasSubstr("is a folder"));
    EXPECT_TRUE(std::filesystem::is_directory(m_path));
    EXPECT_EQ(filesLike("corrupt"), 0);

    std::filesystem::remove(m_path);
    std::filesystem::create_symlink("elsewhere.plist", m_path);
    EXPECT_THAT(open().save(presetOf("New")), HasSubstr("is a link to"));
    EXPECT_TRUE(std::filesystem::is_symlink(m_path));
}

TEST_F(PresetStoreTest, tellsManyRepairsByTheirNumber) {
    std::string entries;
    for (int i = 0; i < 1000; ++i)
        entries += named(std::string("P").append(std::to_string(i)),
                         value("preamp", "<integer>9</integer>"));
    putStore(entries);
    EXPECT_EQ(open().presets().size(), 1000u);
    EXPECT_EQ(m_told.size(), 51u);
    EXPECT_THAT(m_told.back(), HasSubstr("950 more"));
}
