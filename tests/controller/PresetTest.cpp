#include "parameters/Preset.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <fstream>
#include <limits>

#include "ScratchFolder.h"
#include "propertylists/PropertyList.h"

namespace {

using testing::HasSubstr;
using testing::StartsWith;
using enum ParameterId;
using Dictionary = PropertyListValue::Dictionary;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

Preset presetOf(const Dictionary& dictionary) {
    std::string error;
    const auto preset = Preset::fromPropertyList(dictionary, error);
    EXPECT_TRUE(preset) << error;
    return preset.value_or(Preset{});
}

std::string errorOf(const PropertyListValue& value) {
    std::string error;
    EXPECT_FALSE(Preset::fromPropertyList(value, error));
    EXPECT_EQ(error.find('\n'), std::string::npos);
    return error;
}

Preset unlikeAnyDefault() {
    Preset preset;
    preset.name = "Unlike \"any\" default";
    preset.wave = "internal/Some Wave.wav";
    preset.syncSpeed = true;
    preset.grainMotion = 6;
    preset.isProtected = true;
    for (const Parameter& p : kParameters) {
        if (p.kind == ParameterKind::number)
            preset.setNumber(p.id, p.stored.low + (p.stored.high - p.stored.low) / 3.f);
    }
    return preset;
}

}  // namespace

TEST(Preset, survivesItsPropertyListToTheLastBit) {
    std::string error;
    const auto xml = PropertyList::toXml(unlikeAnyDefault().toPropertyList(), error);
    ASSERT_TRUE(xml) << error;
    const auto list = PropertyList::parse(
        {reinterpret_cast<const std::uint8_t*>(xml->data()), xml->size()}, error);
    ASSERT_TRUE(list) << error;
    const auto preset = Preset::fromPropertyList(*list, error);
    ASSERT_TRUE(preset) << error;
    EXPECT_EQ(*preset, unlikeAnyDefault());
}

TEST(Preset, readsWhatIsMissingAsZero) {
    const Preset preset = presetOf({{"grainSize", 1}});
    EXPECT_EQ(preset.number(grainSize), 1.f);
    EXPECT_EQ(preset.number(preamp), 0.f);
    EXPECT_EQ(preset.grainMotion, 0);
    EXPECT_FALSE(preset.syncSpeed);
    EXPECT_FALSE(preset.wave);
    EXPECT_EQ(preset.filterBass(), 0.0074829934f);
}

TEST(Preset, takesBothEndsOfEveryRangeAndNothingBeyond) {
    for (const Parameter& p : kParameters) {
        SCOPED_TRACE(std::string(p.key));
        const float step = p.kind == ParameterKind::number ? 1e-6f : 1.f;
        const float outer[] = {p.stored.low - std::max(step, std::abs(p.stored.low) * 1e-6f),
                               p.stored.high + std::max(step, p.stored.high * 1e-6f)};
        for (const float limit : {p.stored.low, p.stored.high})
            presetOf({{std::string(p.key), limit}});
        for (const float beyond : outer)
            EXPECT_THAT(errorOf(Dictionary{{std::string(p.key), beyond}}), StartsWith(p.key));
        for (const double wild : {kNaN, kInfinity, -kInfinity})
            EXPECT_THAT(errorOf(Dictionary{{std::string(p.key), wild}}), HasSubstr("not finite"));
        EXPECT_THAT(errorOf(Dictionary{{std::string(p.key), 1e300}}), HasSubstr("must be"));
        EXPECT_THAT(errorOf(Dictionary{{std::string(p.key), "1"}}), HasSubstr("not a number"));
        EXPECT_THAT(errorOf(Dictionary{{std::string(p.key), Dictionary{}}}), StartsWith(p.key));
    }
    // Limits as doubles that are no floats count as the float next to them.
    EXPECT_EQ(presetOf({{"filterBass", 441. / 44100.}}).number(filterBass), 0.01f);
    EXPECT_EQ(presetOf({{"filterBass", 1. / 44100.}}).number(filterBass), float(1. / 44100.));
    EXPECT_EQ(presetOf({{"filterBass", 0}}).number(filterBass), 0.f);
}

TEST(Preset, saysWhichKeyAndWhatIsAllowed) {
    const std::pair<PropertyListValue, const char*> cases[] = {
        {Dictionary{{"grainMotion", 9}}, "grainMotion is 9; it must be a whole number from 0 to 6"},
        {Dictionary{{"grainMotion", 1.5}},
         "grainMotion is 1.5; it must be a whole number from 0 to 6"},
        {Dictionary{{"grainSpeed", -2.5}}, "grainSpeed is -2.5; it must be a number from -2 to 2"},
        {Dictionary{{"filterBass", 0.02}},
         "filterBass is 0.02; it must be a number from 2.2675737e-05 to 0.01, or 0 for the "
         "default"},
        {Dictionary{{"preamp", "loud\nand clear"}},
         "preamp is \"loud?and clear\", which is not a number; it must be a number from 0 to 1.25"},
        {Dictionary{{"preamp", true}},
         "preamp is true, which is not a number; it must be a number from 0 to 1.25"},
        {Dictionary{{"syncSpeed", 2}}, "syncSpeed is 2; it must be true or false"},
        {Dictionary{{"name", 3}}, "name must be text"},
        {Dictionary{{"wave", false}}, "wave must be text"},
        {Dictionary{{"protected", "yes"}}, "protected must be true or false"},
        {PropertyListValue::Array{}, "a preset must be a dictionary"},
    };
    for (const auto& [value, line] : cases)
        EXPECT_EQ(errorOf(value), line);
    EXPECT_THAT(errorOf(Dictionary{{"colour", 1}}),
                StartsWith("\"colour\" is not a preset key; the keys are wave, grainSpeed, "));
}

TEST(Preset, isSetByText) {
    std::setlocale(LC_ALL, "de_DE.UTF-8");
    Preset preset;
    std::string error;
    const std::pair<const char*, const char*> good[] = {
        {"grainSpeed", "-1.5"},       {"grainSize", "0x1p-2"}, {"preamp", "125e-2"},
        {"syncSpeed", "true"},        {"grainMotion", "6"},    {"filterBass", "0.01"},
        {"ringModFrequency", "1760"}, {"wave", "1.5"},
    };
    for (const auto& [key, text] : good)
        EXPECT_TRUE(preset.set(key, text, error)) << error;
    EXPECT_EQ(preset.number(grainSpeed), -1.5f);
    EXPECT_EQ(preset.number(grainSize), 0.25f);
    EXPECT_EQ(preset.number(preamp), 1.25f);
    EXPECT_EQ(preset.number(filterBass), 0.01f);
    EXPECT_EQ(preset.number(ringModFrequency), 1760.f);
    EXPECT_EQ(preset.grainMotion, 6);
    EXPECT_EQ(preset.wave, "1.5");
    EXPECT_TRUE(preset.syncSpeed);
    EXPECT_TRUE(preset.set("syncSpeed", "0", error));
    EXPECT_FALSE(preset.syncSpeed);

    const Preset before = preset;
    const std::pair<const char*, const char*> bad[] = {
        {"grainSpeed", "1x"},   {"grainSpeed", ""},      {"grainSpeed", "1,5"},
        {"grainSpeed", "fast"}, {"grainSpeed", "true"},  {"grainSpeed", "nan"},
        {"grainSpeed", "inf"},  {"grainSpeed", "1e999"}, {"grainSpeed", "2.1"},
        {"grainMotion", "7"},   {"grainMotion", "-1"},   {"grainMotion", "Linear"},
        {"syncSpeed", "yes"},   {"syncSpeed", "2"},      {"name", "x"},
        {"protected", "true"},  {"speed", "1"},          {"", "1"},
    };
    for (const auto& [key, text] : bad) {
        error.clear();
        EXPECT_FALSE(preset.set(key, text, error)) << key << '=' << text;
        EXPECT_FALSE(error.empty());
        EXPECT_EQ(preset, before);
    }
    std::setlocale(LC_ALL, "C");
}

TEST(Preset, namesTheFileThatCannotBeRead) {
    ScratchFolder folder;
    std::string error;
    std::ofstream(folder.file("mode")) << "<plist><dict><key>grainMotion</key>\n"
                                          "<integer>9</integer></dict></plist>";
    std::ofstream(folder.file("number")) << "<plist><dict><key>grainSize</key>\n"
                                            "<real>abc</real></dict></plist>";
    EXPECT_FALSE(readPresetFile(folder.file("mode"), error));
    EXPECT_EQ(error,
              folder.file("mode") + ": grainMotion is 9; it must be a whole number from 0 to 6");
    EXPECT_FALSE(readPresetFile(folder.file("number"), error));
    EXPECT_EQ(error, folder.file("number") + ": line 2: \"abc\" is not a number");
    EXPECT_FALSE(readPresetFile(folder.file("none"), error));
    EXPECT_THAT(error, HasSubstr("No such file"));
}
