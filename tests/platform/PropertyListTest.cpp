#include "propertylists/PropertyList.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <clocale>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <limits>
#include <random>
#include <sstream>

#include "ScratchFolder.h"

namespace {

using testing::HasSubstr;
using testing::StartsWith;
using Dictionary = PropertyListValue::Dictionary;
using Array = PropertyListValue::Array;
using Data = PropertyListValue::Data;

std::optional<PropertyListValue> parse(const std::string& xml, std::string& error) {
    return PropertyList::parse({reinterpret_cast<const std::uint8_t*>(xml.data()), xml.size()},
                               error);
}

/// What the reader says about a list that holds only `value`, on its third line.
std::string errorOf(const std::string& value) {
    std::string error;
    EXPECT_FALSE(
        parse("<?xml version=\"1.0\"?>\n<plist version=\"1.0\">\n" + value + "</plist>", error))
        << value;
    EXPECT_EQ(error.find('\n'), std::string::npos);
    return error;
}

PropertyListValue valueOf(const std::string& value) {
    std::string error;
    auto parsed = parse("<plist>" + value + "</plist>", error);
    EXPECT_TRUE(parsed) << error;
    return parsed ? *parsed : PropertyListValue(false);
}

PropertyListValue everyKind() {
    return Dictionary{{"text", "a < b & c \"d\" \xC3\xA9 \xF0\x9F\x8E\xB9"},
                      {"lines", "one\r\ntwo\rthree\tfour\n"},
                      {"spaces", "  kept  "},
                      {"nothing", ""},
                      {"", "an empty key"},
                      {"least", std::numeric_limits<std::int64_t>::min()},
                      {"most", std::numeric_limits<std::int64_t>::max()},
                      {"third", 1. / 3.},
                      {"tiny", 5e-324},
                      {"single", 330.f / 44100.f},
                      {"yes", true},
                      {"no", false},
                      {"date", PropertyListDate{814924800}},
                      {"old", PropertyListDate{-63113904000.}},
                      {"bytes", Data{0, 1, 254, 255}},
                      {"no bytes", Data{}},
                      {"list", Array{1, Array{}, Dictionary{}, "x"}}};
}

std::string written(const PropertyListValue& value) {
    std::string error;
    const auto xml = PropertyList::toXml(value, error);
    EXPECT_TRUE(xml) << error;
    return xml.value_or("");
}

PropertyListValue nested(int depth) {
    PropertyListValue value = Array{};
    for (int i = 1; i < depth; ++i)
        value = Array{value};
    return value;
}

}  // namespace

TEST(PropertyList, readsBackWhatItWrites) {
    std::string error;
    const auto read = parse(written(everyKind()), error);
    ASSERT_TRUE(read) << error;
    EXPECT_EQ(*read, everyKind());
}

TEST(PropertyList, exchangesFilesWithPython) {
    if (std::system("python3 -c 'import plistlib' 2>/dev/null") != 0)
        GTEST_SKIP() << "no python3";
    ScratchFolder folder;
    std::string error;
    ASSERT_TRUE(PropertyList::writeFile(folder.file("ours"), everyKind(), error)) << error;
    std::ofstream(folder.file("exchange.py"))
        << "import plistlib, datetime, sys\n"
           "ours = plistlib.load(open(sys.argv[1], 'rb'))\n"
           "assert ours['third'] == 1 / 3 and ours['least'] == -2**63 and ours['no'] is False\n"
           "assert ours['date'] == datetime.datetime(2026, 10, 29), ours['date']\n"
           "assert ours['bytes'] == bytes([0, 1, 254, 255]) and ours['list'][3] == 'x'\n"
           "assert ours['text'] == 'a < b & c \"d\" \\u00e9 \\U0001f3b9', ours['text']\n"
           "ours['lines'] = 'one'; ours['old'] = datetime.datetime(1, 1, 1)\n"
           "plistlib.dump(ours, open(sys.argv[2], 'wb'))\n";
    const std::string command = "python3 " + folder.file("exchange.py") + " " +
                                folder.file("ours") + " " + folder.file("theirs");
    ASSERT_EQ(std::system(command.c_str()), 0);
    const auto theirs = PropertyList::readFile(folder.file("theirs"), error);
    ASSERT_TRUE(theirs) << error;
    Dictionary expected = *everyKind().dictionary();
    expected.insert_or_assign("lines", "one");
    EXPECT_EQ(*theirs, PropertyListValue(expected));
}

TEST(PropertyList, takesNumbersInCNotationOnly) {
    EXPECT_EQ(valueOf("<integer> -12\n</integer>"), PropertyListValue(-12));
    EXPECT_EQ(valueOf("<integer>+7</integer>"), PropertyListValue(7));
    EXPECT_EQ(valueOf("<real>1e3</real>"), PropertyListValue(1000.));
    EXPECT_TRUE(std::isnan(*valueOf("<real>nan</real>").real()));
    EXPECT_TRUE(std::isinf(*valueOf("<real>-inf</real>").real()));
    EXPECT_TRUE(std::isinf(*valueOf("<real>1e999</real>").real()));
    for (const char* text : {"12x", "", "1.5", "one", "+-3", "0x", "9223372036854775808"})
        EXPECT_THAT(errorOf("<integer>" + std::string(text) + "</integer>"),
                    StartsWith("line 3: "));
    for (const char* text : {"abc", "", "1,5", "1.5 2", "1..2"})
        EXPECT_THAT(errorOf("<real>" + std::string(text) + "</real>"),
                    HasSubstr("is not a number"));
}

TEST(PropertyList, readsAndWritesAlikeInEveryLocale) {
    for (const char* name : {"de_DE.UTF-8", "fr_FR.UTF-8"}) {
        if (std::setlocale(LC_ALL, name))
            break;
    }
    EXPECT_EQ(valueOf("<real>0.25</real>"), PropertyListValue(0.25));
    EXPECT_THAT(written(PropertyListValue(0.25)), HasSubstr("<real>0.25</real>"));
    std::setlocale(LC_ALL, "C");
}

TEST(PropertyList, readsDatesThatAreNoLocalTime) {
    setenv("TZ", "CET-1CEST,M3.5.0,M10.5.0/3", 1);  // leaps over 02:30 on that day
    const PropertyListValue date = valueOf("<date>2026-03-29T02:30:00Z</date>");
    EXPECT_EQ(date, PropertyListValue(PropertyListDate{1774751400. - 978307200.}));
    EXPECT_THAT(written(date), HasSubstr("2026-03-29T02:30:00Z"));
}

TEST(PropertyList, refusesWithTheLine) {
    const std::pair<const char*, const char*> cases[] = {
        {"", "line 3: an empty property list"},
        {"<dict><string>x</string></dict>", "line 3: a value without a <key>"},
        {"<dict>\n<key>a</key></dict>", "line 4: the key \"a\" has no value"},
        {"<dict><key>a</key><key>b</key></dict>", "line 3: the key \"a\" has no value"},
        {"<dict><key>a</key><true/><key>a</key><true/></dict>", "stands there twice"},
        {"<dict>stray<key>a</key><true/></dict>", "text outside of a value: \"stray\""},
        {"<true/><false/>", "more than one value"},
        {"<colour/>", "unknown value <colour>"},
        {"<true>yes</true>", "text within a boolean"},
        {"<date>yesterday</date>", "is not a date"},
        {"<date>2001-02-30T00:00:00Z</date>", "is not a date"},
        {"<data>!!!!</data>", "not Base64"},
        {"<string><b>x</b></string>", "broken XML"},
        {"<string>&undeclared;</string>", "broken XML"},
        {"<array>\n\n<array></array>", "line 5: broken XML"},
    };
    for (const auto& [value, reason] : cases)
        EXPECT_THAT(errorOf(value), HasSubstr(reason)) << value;
    std::string error;
    for (const char* text : {"", "no XML", "<html/>", "<plist", "\xFF\xFE\0", "bplist00"})
        EXPECT_FALSE(parse(text, error)) << text;
    EXPECT_FALSE(parse("<plist><true/>", error));
    EXPECT_THAT(error, StartsWith("line 1: "));
    EXPECT_FALSE(parse("<plist><true/></plist><plist/>", error));
}

TEST(PropertyList, limitsDepthSizeAndEntities) {
    std::string error;
    EXPECT_EQ(parse(written(nested(16)), error), nested(16)) << error;
    std::string deep;
    for (int i = 0; i < 200000; ++i)
        deep += "<array>";
    EXPECT_THAT(errorOf(deep), HasSubstr("nested deeper than 16"));
    EXPECT_FALSE(PropertyList::toXml(nested(17), error));
    EXPECT_FALSE(PropertyList::toXml(std::string(PropertyList::kMaximumBytes, 'x'), error));
    EXPECT_FALSE(parse(
        "<plist><string>" + std::string(PropertyList::kMaximumBytes, 'x') + "</string></plist>",
        error));
    EXPECT_THAT(error, HasSubstr("4 MiB"));
    EXPECT_FALSE(
        parse("<!DOCTYPE p [<!ENTITY a \"x\"><!ENTITY b \"&a;&a;\">]>"
              "<plist><string>&b;</string></plist>",
              error));
    EXPECT_THAT(error, HasSubstr("entity"));
}

TEST(PropertyList, refusesTagsThatWouldTakeHoursToRead) {
    std::string many;
    for (int i = 0; i < 300000; ++i)
        many += " a" + std::to_string(i) + "='>'";
    EXPECT_THAT(errorOf("<dict" + many + "/>"), StartsWith("line 3: a tag of more than 256"));
    EXPECT_THAT(errorOf("<!-- > --><![CDATA[ <> ]]><dict" + many), HasSubstr("a tag of more"));
    std::string utf16;
    for (const char c : "<?xml version='1.0' encoding='UTF-16'?><plist><dict" + many + "/></plist>")
        utf16 += {c, '\0'};
    std::string error;
    EXPECT_FALSE(parse("\xFF\xFE" + utf16, error));
    EXPECT_FALSE(parse(utf16, error));
    const std::string text(100000, '>');
    EXPECT_EQ(valueOf("<!--" + text + "--><string><![CDATA[" + text + "]]></string>"),
              PropertyListValue(text));
}

TEST(PropertyList, doesNotWriteWhatCouldNotBeRead) {
    const PropertyListValue values[] = {std::string("bell\a"),   std::string("half\xC3"),
                                        std::string("nul\0", 4), std::string("\xEF\xBF\xBE"),
                                        PropertyListDate{1e18},  PropertyListDate{std::nan("")}};
    for (const PropertyListValue& value : values) {
        std::string error;
        EXPECT_FALSE(PropertyList::toXml(value, error));
        EXPECT_FALSE(error.empty());
    }
}

TEST(PropertyList, survivesRandomDamage) {
    constexpr unsigned kSeed = 815;
    std::mt19937 random(kSeed);
    const std::string whole = written(everyKind());
    for (int round = 0; round < 3000; ++round) {
        std::string xml = whole;
        for (auto damage = random() % 3 + 1; damage > 0; --damage)
            xml[random() % xml.size()] = char(random());
        std::string error;
        if (const auto value = parse(xml, error))
            ASSERT_TRUE(PropertyList::toXml(*value, error)) << kSeed << ' ' << round << error;
        else
            ASSERT_THAT(error, StartsWith("line "));
    }
}

TEST(PropertyList, keepsTheOldFileWhenTheNewOneCannotBeWritten) {
    ScratchFolder folder;
    const std::string path = folder.file("list");
    std::string error;
    ASSERT_TRUE(PropertyList::writeFile(path, "old", error)) << error;
    EXPECT_FALSE(PropertyList::writeFile(path, std::string("\a"), error));
    EXPECT_THAT(error, StartsWith(path + ": cannot write"));
    EXPECT_EQ(PropertyList::readFile(path, error), PropertyListValue("old"));
    EXPECT_FALSE(PropertyList::writeFile(folder.file("none/list"), "new", error));
    EXPECT_FALSE(PropertyList::writeFile(folder.path().string(), "new", error));
    ASSERT_TRUE(PropertyList::writeFile(path, "new", error)) << error;
    EXPECT_EQ(PropertyList::readFile(path, error), PropertyListValue("new"));
    std::size_t files = 0;
    for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator(folder.path()))
        ++files;
    EXPECT_EQ(files, 1u) << "something was left behind";
}

TEST(PropertyList, replacesTheFileBehindALinkAndKeepsItsPermissions) {
    ScratchFolder folder;
    std::string error;
    ASSERT_TRUE(PropertyList::writeFile(folder.file("real"), "old", error)) << error;
    ASSERT_EQ(chmod(folder.file("real").c_str(), 0640), 0);
    std::filesystem::create_symlink("real", folder.file("link"));
    ASSERT_TRUE(PropertyList::writeFile(folder.file("link"), "new", error)) << error;
    EXPECT_TRUE(std::filesystem::is_symlink(folder.file("link")));
    EXPECT_EQ(PropertyList::readFile(folder.file("real"), error), PropertyListValue("new"));
    struct stat status {};
    ASSERT_EQ(stat(folder.file("real").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0640u);
}
