#include "defaults/UserDefaults.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>

#include "ScratchFolder.h"

TEST(UserDefaults, remembersUntilTheNextRun) {
    ScratchFolder folder;
    const std::string path = folder.file("config/ombrix-synth");
    const PropertyListValue::Dictionary settings = {{"grainSpeed", 1.5}, {"syncSpeed", true}};
    {
        UserDefaults defaults(path);
        UserDefaults neighbour(path);
        EXPECT_FALSE(defaults.boolean("auto-gain-control"));
        defaults.set("auto-gain-control", false);
        neighbour.set("current-preset", "Default Sound");
        defaults.set("current-settings", settings);
        defaults.set("keyboard-size", -3);
        defaults.set("gone", true);
        defaults.remove("gone");
        defaults.remove("never there");
    }
    const UserDefaults defaults(path);
    EXPECT_EQ(defaults.boolean("auto-gain-control"), false);
    EXPECT_EQ(defaults.string("current-preset"), "Default Sound");
    EXPECT_EQ(defaults.dictionary("current-settings"), settings);
    EXPECT_EQ(defaults.integer("keyboard-size"), -3);
    EXPECT_FALSE(defaults.integer("auto-gain-control")) << "of another type";
    EXPECT_FALSE(defaults.boolean("gone"));
    EXPECT_FALSE(defaults.string("auto-gain-control")) << "of another type";
}

TEST(UserDefaults, findsTheConfigurationFolder) {
    setenv("XDG_CONFIG_HOME", "/somewhere", 1);
    EXPECT_EQ(UserDefaults::defaultPath(), "/somewhere/ombrix-synth");
    setenv("XDG_CONFIG_HOME", "not/absolute", 1);
    setenv("HOME", "/home/someone", 1);
    EXPECT_EQ(UserDefaults::defaultPath(), "/home/someone/.config/ombrix-synth");
    unsetenv("XDG_CONFIG_HOME");
    unsetenv("HOME");
    UserDefaults homeless;
    homeless.set("current-preset", "Pad");
    EXPECT_EQ(homeless.string("current-preset"), "Pad");
}

TEST(UserDefaults, keepsABrokenFileAside) {
    ScratchFolder folder;
    const std::string path = folder.file("ombrix-synth");
    std::ofstream(path) << "<plist><dict><key>current-preset</key>";
    UserDefaults defaults(path);
    EXPECT_FALSE(defaults.string("current-preset"));
    EXPECT_FALSE(std::filesystem::exists(path + ".broken")) << "reading changes nothing";
    defaults.set("current-preset", "Pad");
    EXPECT_TRUE(std::filesystem::exists(path + ".broken"));
    EXPECT_EQ(UserDefaults(path).string("current-preset"), "Pad");
}

TEST(UserDefaults, liveInMemoryWhereNothingCanBeWritten) {
    UserDefaults defaults("/dev/null/ombrix-synth");
    defaults.set("auto-gain-control", true);
    defaults.set("current-preset", "Pad");
    EXPECT_EQ(defaults.boolean("auto-gain-control"), true);
}
