#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "Player.h"
#include "RandomSource.h"
#include "ScratchFolder.h"
#include "SoundMeasures.h"
#include "parameters/PresetStore.h"
#include "propertylists/PropertyList.h"

namespace {

constexpr double kLoudness = -24;  // LUFS
constexpr double kSpread = 1.5;    // dB either way: any two are within 3 dB

PropertyListValue::Dictionary shippedPresets() {
    std::string error;
    const auto path = WaveChoice::resource("default-presets.plist");
    const auto list = PropertyList::readFile(path.value_or("default-presets.plist"), error);
    return list && list->dictionary() ? *list->dictionary() : PropertyListValue::Dictionary{};
}

Preset presetIn(const PropertyListValue& value) {
    std::string error;
    const auto preset = Preset::fromPropertyList(value, error);
    EXPECT_TRUE(preset) << error;
    return preset.value_or(Preset{});
}

std::vector<std::string> names() {
    std::vector<std::string> names;
    for (const auto& [name, preset] : shippedPresets())
        names.push_back(name);
    return names;
}

std::string testName(const testing::TestParamInfo<std::string>& info) {
    std::string name = info.param;
    std::ranges::replace(name, ' ', '_');
    return name;
}

class ShippedPreset : public testing::TestWithParam<std::string> {};

}  // namespace

TEST(ShippedPresets, showAllThatTheInstrumentDoes) {
    const auto dictionary = shippedPresets();
    EXPECT_GE(dictionary.size(), 30u);
    ASSERT_TRUE(dictionary.contains("default sound"));
    std::set<std::int32_t> modes;
    std::set<ParameterId> used;
    for (const auto& [name, value] : dictionary) {
        const Preset preset = presetIn(value);
        EXPECT_TRUE(preset.isProtected && preset.wave) << preset.name;
        modes.insert(preset.grainMotion);
        if (preset.syncSpeed)
            used.insert(ParameterId::syncSpeed);
        for (const Parameter& row : kParameters) {
            if (row.kind == ParameterKind::number && preset.number(row.id) != row.storedInitial)
                used.insert(row.id);
        }
    }
    EXPECT_EQ(modes.size(), 7u);
    EXPECT_EQ(used.size(), kParameterCount - 1);  // all but the mode
}

TEST(ShippedPresets, areWhatANewUserHas) {
    const ScratchFolder folder;
    std::vector<std::string> told;
    const PresetStore store(folder.file("presets.plist"),
                            WaveChoice::resource("default-presets.plist").value_or(""),
                            [&](const std::string& line) { told.push_back(line); });
    EXPECT_THAT(told, testing::IsEmpty());
    EXPECT_EQ(store.presets().size(), shippedPresets().size());
    EXPECT_EQ(store.hasPresetWithName("Default Sound"), -1);
}

TEST_P(ShippedPreset, isHeardAsLoudAsTheOthersAndMadeAgain) {
    Player player;
    RandomSource::seed(1);
    const Preset preset = presetIn(shippedPresets().at(GetParam()));
    const auto loaded = player.instrument().updateSettingsFromPreset(preset);
    ASSERT_EQ(loaded.error + loaded.notice, "");

    Preset expected = preset;  // name and protection are the store's
    expected.name.clear();
    expected.isProtected = false;
    expected.wave = WaveChoice::plainWaveName(*preset.wave);
    EXPECT_EQ(player.instrument().makePresetFromSettings(), expected);

    const SoundMeasures heard = measure(player.play(OMBRIX_SONG, 2));
    EXPECT_EQ(heard.clips, 0u);
    EXPECT_NEAR(heard.loudness, kLoudness, kSpread);
    EXPECT_LT(heard.gapSeconds, 1);
}

INSTANTIATE_TEST_SUITE_P(All, ShippedPreset, testing::ValuesIn(names()), testName);
