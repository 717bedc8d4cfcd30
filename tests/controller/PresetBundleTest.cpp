#include "parameters/PresetBundle.h"
#include "parameters/PresetNames.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdlib>
#include <set>

#include "Bundles.h"
#include "Contents.h"
#include "ScratchFolder.h"
#include "SoundFiles.h"
#include "parameters/PresetImport.h"
#include "propertylists/PropertyList.h"
#include "wavechoice/WaveChoice.h"

namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

class PresetBundles : public testing::Test {
  protected:
    PresetBundles() {
        fs::create_directory(m_scratch.file("made"));
        moveTo("data");
    }

    /// Another user's data folder; it is not there yet.
    void moveTo(const std::string& name) {
        m_data = m_scratch.file(name);
        setenv("OMBRIX_DATA", m_data.c_str(), 1);
    }
    std::string made(const std::string& name) const {
        return m_scratch.file("made/" + name + ".ombrix");
    }
    std::string data(const std::string& name) const { return m_data + "/" + name; }
    PresetStore store() {
        return {WaveChoice::presetFilename(), "", [this](auto& line) { m_told.push_back(line); }};
    }
    PresetImport::Result import(const std::string& path, bool replace = false) {
        PresetStore into = store();
        m_told.clear();
        return PresetImport(into, replace, [this](auto& line) { m_told.push_back(line); })
            .take(path);
    }
    /// What a user sees of it.
    std::set<std::string> dataFolder() const {
        std::set<std::string> names;
        std::error_code missing;
        for (const auto& entry : fs::directory_iterator(m_data, missing))
            names.insert(entry.path().filename());
        names.erase(".presets.lock");
        return names;
    }
    void putData(const std::string& name, const std::string& bytes) const {
        fs::create_directories(m_data);
        SoundFiles::write(data(name), bytes);
    }

    ScratchFolder m_scratch;
    std::string m_data;
    std::vector<std::string> m_told;
};

Preset chime() {
    Preset preset;
    preset.name = "Glöckchen / 1";
    preset.wave = "user/Glöckchen 1.wav";
    preset.syncSpeed = true;
    preset.grainMotion = 6;
    preset.isProtected = true;
    preset.unknown.emplace("glow", 0.25);
    for (const Parameter& p : kParameters) {
        if (p.kind == ParameterKind::number)
            preset.setNumber(p.id, p.stored.low + (p.stored.high - p.stored.low) / 3.f);
    }
    return preset;
}

std::string chimeSound() {
    const auto noise = SoundFiles::noise(30000, 16);
    std::vector<std::int16_t> samples;
    for (const double value : noise)
        samples.push_back(std::int16_t(value * 32768));
    return SoundFiles::wav({}, SoundFiles::bytes(samples));
}

}  // namespace

TEST_F(PresetBundles, travelFromOneUserToAnother) {
    putData("Glöckchen 1.wav", chimeSound());
    ASSERT_EQ(PresetBundle::write(chime(), made("chime"), false), "");
    EXPECT_EQ(PresetBundle::filenameFor(chime().name), "Glöckchen _ 1.ombrix");

    const std::string out = m_scratch.file("out");
    ASSERT_TRUE(SoundFiles::runs("python3 -m zipfile -t '" + made("chime") + "'"));
    ASSERT_TRUE(SoundFiles::runs("python3 -m zipfile -e '" + made("chime") + "' '" + out + "'"));
    EXPECT_EQ(contentsOf(out + "/Glöckchen 1.wav"), chimeSound());
    EXPECT_NE(contentsOf(out + "/preset.plist"), "");
    EXPECT_EQ(std::distance(fs::directory_iterator(out), {}), 2);

    moveTo("other");
    const auto result = import(made("chime"));
    EXPECT_EQ(result.error, "");
    EXPECT_THAT(result.names, ElementsAre(chime().name));
    EXPECT_THAT(m_told, IsEmpty());
    EXPECT_EQ(contentsOf(data("Glöckchen 1.wav")), chimeSound());
    EXPECT_THAT(dataFolder(), ElementsAre("Glöckchen 1.wav", "presets.plist"));
    Preset expected = chime();
    expected.isProtected = false;
    const PresetStore there = store();
    ASSERT_TRUE(there.find(chime().name));
    EXPECT_EQ(*there.find(chime().name), expected);
}

TEST_F(PresetBundles, takeTheNextNameWhereOneIsTaken) {
    ASSERT_TRUE(Bundles::make(m_scratch.file("made"), "good stored other-chime shadow"));
    EXPECT_THAT(import(made("good")).names, ElementsAre("Chime"));
    const std::string sound = contentsOf(data("Chime.wav"));
    // The very same sound is not stored twice, another one gets its own name.
    EXPECT_THAT(import(made("stored")).names, ElementsAre("Chime 2"));
    EXPECT_THAT(m_told, ElementsAre(StartsWith(made("stored"))));
    EXPECT_THAT(import(made("other-chime")).names, ElementsAre("Chime 3"));
    EXPECT_EQ(store().find("chime 3")->wave, "Chime 2.wav");
    EXPECT_EQ(m_told.size(), 2u);
    EXPECT_THAT(import(made("other-chime"), true).names, ElementsAre("Chime"));
    EXPECT_EQ(store().find("chime")->wave, "Chime 2.wav");
    // A shipped sound is not hidden by one of its name; a file in the way is stepped around.
    fs::create_symlink("nowhere", data("Sine Wave 2.wav"));
    import(made("shadow"));
    EXPECT_EQ(store().find("chime 4")->wave, "Sine Wave 3.wav");
    EXPECT_EQ(contentsOf(data("Chime.wav")), sound);
    EXPECT_NE(contentsOf(data("Chime 2.wav")), sound);
    EXPECT_THAT(dataFolder(), ElementsAre("Chime 2.wav", "Chime.wav", "Sine Wave 2.wav",
                                          "Sine Wave 3.wav", "presets.plist", "presets.plist.bak"));

    Preset ours = chime();
    ours.name = "Chime";
    ASSERT_EQ(store().save(ours), "");  // protected
    EXPECT_THAT(import(made("good"), true).names, ElementsAre("Chime 5"));
}

TEST_F(PresetBundles, areReadFromNewerProgramsAndRepaired) {
    ASSERT_TRUE(Bundles::make(m_scratch.file("made"), "newer repairs no-sound folder shipped"));
    EXPECT_EQ(import(made("newer")).error, "");
    EXPECT_TRUE(store().find("chime")->unknown.contains("glow"));
    EXPECT_FALSE(store().find("chime")->isProtected);
    EXPECT_EQ(import(made("repairs"), true).error, "");
    EXPECT_EQ(store().find("chime")->grainMotion, 1);
    EXPECT_THAT(m_told, ElementsAre(HasSubstr("grainMotion is 9")));
    for (const char* silent : {"no-sound", "folder"}) {
        moveTo(silent);
        EXPECT_EQ(import(made(silent)).error, "");
        EXPECT_THAT(m_told, ElementsAre(HasSubstr("\"Chime.wav\" is not here")));
    }
    moveTo("shipped");
    import(made("shipped"));
    EXPECT_THAT(m_told, IsEmpty());
}

TEST_F(PresetBundles, thatAreHostileChangeNothing) {
    ASSERT_TRUE(Bundles::make(m_scratch.file("made")));
    const std::pair<const char*, const char*> cases[] = {
        {"parent", "not allowed"},
        {"inner-parent", "not allowed"},
        {"absolute", "not allowed"},
        {"backslash", "not allowed"},
        {"control", "not allowed"},
        {"long-name", "not allowed"},
        {"outside", "not allowed"},
        {"link", "a link"},
        {"device", "a device"},
        {"encrypted", "encrypted"},
        {"twice", "twice"},
        {"twice-preset", "twice"},
        {"no-preset", "\"preset.plist\" is not in it"},
        {"nested", "\"preset.plist\" is not in it"},
        {"empty", "\"preset.plist\" is not in it"},
        {"not-a-sound", "Chime.wav is not a sound"},
        {"half-sound", "Chime.wav is damaged"},
        {"wrong-sum", "damaged"},
        {"overlapping", "damaged"},
        {"lzma", "packed"},
        {"big-list", "larger than 4 MiB"},
        {"claims-little", "larger than 4 MiB"},
        {"claims-much", "larger than 4 MiB"},
        {"many", "10001 entries; the limit is 64"},
        {"cut", "damaged"},
        {"cut-in-sound", "damaged"},
        {"garbage", "damaged"},
        {"our-own", "no sound may have the name"},
        {"hidden", "no sound may have the name"},
        {"deep", "nested deeper"},
        {"entities", "entity"},
        {"no-dictionary", "must be a dictionary"},
        {"no-keys", "holds no preset"},
        {"not-there", "No such file"},
    };
    const auto before = dataFolder();
    for (const auto& [name, why] : cases) {
        SCOPED_TRACE(name);
        const auto result = import(made(name));
        EXPECT_TRUE(result.inputAtFault);
        EXPECT_THAT(result.error, testing::AllOf(StartsWith(made(name) + ": "), HasSubstr(why)));
        EXPECT_EQ(result.error.find('\n'), std::string::npos);
        EXPECT_THAT(result.names, IsEmpty());
        EXPECT_THAT(m_told, IsEmpty());
        EXPECT_EQ(dataFolder(), before);
    }
    EXPECT_FALSE(fs::exists(m_scratch.file("Chime.wav")));
}

TEST_F(PresetBundles, areNotMadeOfSoundsThatCannotTravel) {
    fs::create_directories(data("folder.wav"));
    ASSERT_EQ(mkfifo(data("pipe.wav").c_str(), 0600), 0);
    putData("back\\slash.wav", chimeSound());
    fs::resize_file((putData("large.wav", ""), data("large.wav")), PresetBundle::kLargestSound + 1);
    for (const char* wave :
         {"missing.wav", "folder.wav", "pipe.wav", "back\\slash.wav", "large.wav"}) {
        SCOPED_TRACE(wave);
        Preset preset = chime();
        preset.wave = wave;
        EXPECT_THAT(PresetBundle::write(preset, made("bad"), true), HasSubstr(wave));
        EXPECT_TRUE(fs::is_empty(m_scratch.file("made")));
    }
    Preset shipped = chime();
    shipped.wave = "generated/square";
    EXPECT_EQ(PresetBundle::write(shipped, made("shipped"), false), "");
    const std::string out = m_scratch.file("out");
    EXPECT_TRUE(SoundFiles::runs("python3 -m zipfile -e '" + made("shipped") + "' '" + out + "'"));
    EXPECT_TRUE(fs::exists(out + "/preset.plist"));
    EXPECT_EQ(std::distance(fs::directory_iterator(out), {}), 1);
    const std::string before = contentsOf(made("shipped"));
    EXPECT_THAT(PresetBundle::write(chime(), made("shipped"), false), HasSubstr("missing"));
    shipped.wave.reset();
    EXPECT_THAT(PresetBundle::write(shipped, made("shipped"), false), HasSubstr("exists already"));
    EXPECT_EQ(contentsOf(made("shipped")), before);
}

TEST_F(PresetBundles, comeAsPlainListsToo) {
    Preset one = chime();
    one.wave = "generated/sine";
    Preset other = one;
    other.name = "Other";
    const auto listed = [&](const PropertyListValue& value) {
        std::string error;
        EXPECT_TRUE(PropertyList::writeFile(m_scratch.file("list.plist"), value, error)) << error;
        return import(m_scratch.file("list.plist"));
    };
    const auto store = [&] {
        return PropertyListValue::Dictionary{{PresetNames::keyOf(one.name), one.toPropertyList()},
                                             {"other", other.toPropertyList()},
                                             {"version of a newer store", 7}};
    };
    EXPECT_THAT(listed(one.toPropertyList()).names, ElementsAre(one.name));
    EXPECT_THAT(listed(store()).names, ElementsAre(one.name + " 2", "Other"));
    const PresetStore after = PresetBundles::store();
    Preset expected = one;
    expected.isProtected = false;
    EXPECT_EQ(*after.find(one.name), expected);
    // What this program came with too is not taken in again.
    ASSERT_EQ(PresetBundles::store().save(one), "");
    EXPECT_THAT(listed(store()).names, ElementsAre("Other 2"));
    // One bad name, and none of them arrives.
    other.wave = "user/../../x.wav";
    EXPECT_THAT(listed(store()).error, HasSubstr("the sound's name \"user/../../x.wav\""));
    for (const PropertyListValue& nothing :
         {PropertyListValue(PropertyListValue::Dictionary{}), PropertyListValue("Chime")})
        EXPECT_THAT(listed(nothing).error, HasSubstr("holds no preset"));
    EXPECT_EQ(PresetBundles::store().presets().size(), 4u);
}
