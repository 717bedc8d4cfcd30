// What `ombrix render` writes.

#include <algorithm>
#include <cstdlib>
#include <filesystem>

#include "CommandLine.h"
#include "Sounds.h"

using testing::HasSubstr;
using testing::IsEmpty;

namespace {

constexpr std::size_t kHalfSecond = 22050;

int loudest(const std::vector<std::int16_t>& samples) {
    int peak = 0;
    for (const std::int16_t sample : samples)
        peak = std::max(peak, std::abs(int(sample)));
    return peak;
}

std::string preset(const std::string& content) {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\"><dict>" + content +
           "</dict></plist>\n";
}
std::string real(const std::string& key, const std::string& value) {
    return "<key>" + key + "</key><real>" + value + "</real>";
}

}  // namespace

TEST_F(CommandLine, writesTheMusicAndSaysHowLongItTook) {
    const Outcome outcome = render();
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_THAT(outcome.err, IsEmpty());
    EXPECT_THAT(outcome.out, testing::ContainsRegex("0\\.5"));
    const auto samples = sounds::rendered(contentsOf(path("out.wav")));
    ASSERT_TRUE(samples);
    EXPECT_EQ(samples->size(), kHalfSecond);
    EXPECT_GT(loudest(*samples), 1000);
    EXPECT_EQ(folder(), (std::set<std::string>{"song.mid", "out.wav"}));
    EXPECT_TRUE(std::filesystem::is_empty(home()));
}

TEST_F(CommandLine, needsNeitherHomeNorServers) {
    const auto usual = sound();
    m_surroundings.environment.clear();
    EXPECT_EQ(sound(), usual);
}

TEST_F(CommandLine, givesTheSameBytesForTheSameInputAndSeed) {
    EXPECT_EQ(sound(), sound());
    const auto chaos = [this](const char* seed) {
        return sound({"--set", "grainMotion=3", "--set", "grainSize=0", "--seed", seed});
    };
    const auto first = chaos("1");
    EXPECT_EQ(chaos("1"), first);
    EXPECT_NE(chaos("2"), first);
    EXPECT_EQ(sound({"--set", "grainMotion=3", "--set", "grainSize=0"}), first);
}

TEST_F(CommandLine, cutsAtTheNearestFrame) {
    const std::vector<std::pair<const char*, std::size_t>> cases{
        {"0", 0},       {"0.00001", 0},     {"0.00002", 1},     {"0.5", 22050},
        {"1.0", 44100}, {"1.00001", 44100}, {"1.00002", 44101}, {"5e-1", 22050},
    };
    for (const auto& [seconds, frames] : cases) {
        SCOPED_TRACE(seconds);
        EXPECT_EQ(sound({"--seconds", seconds}).size(), frames);
    }
}

TEST_F(CommandLine, endsWhenTheLastNoteHasFaded) {
    ASSERT_EQ(run({"render", "song.mid", "--output", "out.wav", "--sound", "Sine Wave", "--set",
                   "adsrRelease=0.5"})
                  .exitCode,
              0);
    const auto samples = sounds::rendered(contentsOf(path("out.wav")));
    ASSERT_TRUE(samples);
    // 0.3 s of notes, half a second of release, then a second of silence and less than a buffer.
    EXPECT_GE(samples->size(), std::size_t(1.8 * 44100) - 512);
    EXPECT_LE(samples->size(), std::size_t(1.8 * 44100) + 2048);
    EXPECT_EQ(loudest({samples->end() - 44100, samples->end()}), 0);
}

TEST_F(CommandLine, takesSettingsFromPresetAndSetInThatOrder) {
    const auto plain = sound();
    EXPECT_EQ(sound({"--set", "filterBass=0"}), plain);
    EXPECT_EQ(sound({"--set", "preamp=0", "--set", "preamp=1"}), plain);
    EXPECT_EQ(loudest(sound({"--set", "preamp=0"})), 0);
    // A preset replaces the start settings whole: what it does not name is 0.
    put("quiet.plist", preset(""));
    EXPECT_EQ(loudest(sound({"--preset", "quiet.plist"})), 0);
    put("like-new.plist",
        preset(real("grainSpeed", "1") + real("grainSize", "0.5") + real("filterCutoff", "1") +
               real("adsrSustain", "1") + real("adsrRelease", "0.02") +
               real("ringModFrequency", "440") + "<key>grainMotion</key><integer>1</integer>"));
    EXPECT_EQ(sound({"--set", "preamp=1", "--preset", "like-new.plist"}), plain);
    for (const char* setting :
         {"grainMotion=6", "adsrAttack=5", "grainSpeed=-2", "syncSpeed=true", "syncSpeed=0",
          "preamp=125e-2", "echoDelay=2", "ringModFrequency=1760"}) {
        SCOPED_TRACE(setting);
        EXPECT_EQ(sound({"--set", setting}).size(), kHalfSecond);
    }
}

TEST_F(CommandLine, takesASoundByNameOrByPath) {
    put("tone.wav", sounds::tone(44100));
    std::set<std::vector<std::int16_t>> all;
    for (const char* name : {"Sine Wave", "Square Wave", "Triangle Wave", "Sawtooth Wave"}) {
        const auto samples = sound({"--sound", name});
        EXPECT_EQ(sound({"--sound", std::string(name) + ".wav"}), samples);
        all.insert(samples);
    }
    const auto file = sound({"--sound", "tone.wav"});
    EXPECT_EQ(sound({"--sound", path("tone.wav")}), file);
    all.insert(file);
    EXPECT_EQ(all.size(), 5u);
    put("preset.plist", preset("<key>wave</key><string>Square Wave.wav</string>" +
                               real("preamp", "1") + real("adsrSustain", "1")));
    EXPECT_EQ(sound({"--preset", "preset.plist", "--sound", "tone.wav"}),
              sound({"--sound", "tone.wav", "--preset", "preset.plist"}));
    // The last --sound stands after the song's own, so this one is the preset's.
    EXPECT_EQ(run({"render", "song.mid", "--output", "out.wav", "--force", "--seconds", "0.5",
                   "--preset", "preset.plist"})
                  .exitCode,
              0);
    const auto ofPreset = sounds::rendered(contentsOf(path("out.wav")));
    ASSERT_TRUE(ofPreset);
    EXPECT_EQ(*ofPreset, sound({"--preset", "preset.plist", "--sound", "Square Wave"}));
}

TEST_F(CommandLine, takesAPresetByItsNameAndChangesNothing) {
    m_surroundings.environment["OMBRIX_DATA"] = path("data");
    std::filesystem::create_directory(path("data"));
    const std::string ofBell = "<key>wave</key><string>gone.wav</string>" + real("preamp", "1") +
                               real("adsrSustain", "1") + real("grainSize", "9");
    put("data/presets.plist",
        "<plist><dict><key>bell</key><dict><key>name</key>"
        "<string>Bell</string>" +
            ofBell + "</dict></dict></plist>");
    const Program::Words words{"render",    "song.mid", "--output", "out.wav",
                               "--seconds", "0.5",      "--preset"};
    const auto with = [&](const std::string& name) {
        Program::Words all = words;
        all.push_back(name);
        return run(all);
    };
    EXPECT_THAT(with("Bells").err, IsOneLine());
    const Outcome outcome = with(" BELL");
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_THAT(outcome.err, HasSubstr("grainSize is 9"));
    EXPECT_THAT(outcome.err, HasSubstr("\"gone.wav\" is not there"));
    put("data/presets.plist", "garbage");
    EXPECT_EQ(with("Bell").exitCode, 2);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(path("data")), {}), 1);
}
