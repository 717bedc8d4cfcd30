#include "screens/PresetScreens.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

#include "ScratchFolder.h"
#include "notifications/NotificationCentre.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class PresetScreensTest : public testing::Test, protected SettingsDelegate {
  protected:
    PresetScreensTest() {
        setenv("OMBRIX_DATA", m_folder.path().c_str(), 1);
        for (const char* name : {"zeta", "Élan", "Beta"})
            save(name, false);
        save("Shipped One", true);
        m_settings.pick(*m_store.find("beta"));
    }

    void modificationNoticeChanged(bool) override {
        if (m_bar)
            m_bar->update();
    }

    void save(const std::string& name, bool isProtected) {
        Preset preset;
        preset.name = name;
        preset.isProtected = isProtected;
        ASSERT_EQ(m_store.save(preset), "");
    }

    template <typename Content>
    Content& shown(const char* tag) {
        EXPECT_EQ(m_presentation.tag(), tag);
        auto* content = qobject_cast<Content*>(m_presentation.content());
        EXPECT_TRUE(content);
        return *content;
    }

    static std::vector<std::string> rows(const ItemPickerController& picker) {
        std::vector<std::string> titles;
        for (int row = 0; row < picker.rowCount(); ++row) {
            const auto says = [&](int role) { return picker.data(picker.index(row), role); };
            titles.push_back(says(ItemPickerController::titleRole).toString().toStdString() +
                             (says(ItemPickerController::checkedRole).toBool() ? " checked" : "") +
                             (says(ItemPickerController::changedRole).toBool() ? " changed" : ""));
        }
        return titles;
    }

    ScratchFolder m_folder;
    Instrument m_instrument;
    InstanceLock m_place{m_folder.path().string()};
    UnsavedTake m_unsaved{m_place};
    UserDefaults m_defaults{m_folder.file("defaults")};
    PresetStore m_store{m_folder.file("presets.plist"), "", [](const std::string&) {}};
    std::unique_ptr<PresetBar> m_bar;
    WaveLoading m_sounds{m_instrument.waves()};
    Settings m_settings{m_instrument, m_sounds, m_store, m_defaults, m_unsaved, *this};
    GrainModeState m_grainMode{m_instrument, m_settings};
    Presentation m_presentation;
    AlertController m_alert;
    std::vector<std::string> m_told;
    PresetScreens m_screens{
        {m_settings, m_store, m_grainMode,
         *(m_bar = std::make_unique<PresetBar>(m_settings, m_store)), m_presentation, m_alert},
        [this](const std::string& line) { m_told.push_back(line); }};
};

}  // namespace

TEST_F(PresetScreensTest, listPresetsToPickFrom) {
    m_settings.modify();
    m_screens.toolbarPresetClicked();
    auto& list = shown<ItemPickerController>("pset");
    EXPECT_EQ(list.title(), "Presets");
    EXPECT_THAT(rows(list), ElementsAre("Beta checked changed", "Shipped One", "zeta", "Élan"));

    // Pressing the button again neither replaces nor closes it.
    m_screens.toolbarPresetClicked();
    EXPECT_EQ(&list, m_presentation.content());

    list.setSearch(" ELA");
    list.setScroll(7);
    EXPECT_THAT(rows(list), ElementsAre("Élan"));
    EXPECT_EQ(list.checkedRow(), -1);
    list.choose(0);
    EXPECT_EQ(m_settings.pickerTitle(), "Élan");
    EXPECT_EQ(m_presentation.tag(), "");

    m_screens.toolbarPresetClicked();
    auto& again = shown<ItemPickerController>("pset");
    EXPECT_EQ(again.scroll(), 7);
    EXPECT_THAT(rows(again), ElementsAre("Élan checked"));
    m_settings.modify();
    EXPECT_THAT(rows(again), ElementsAre("Élan checked changed"));
    again.choose(0);  // applied once more
    EXPECT_FALSE(m_settings.isModified());

    m_screens.toolbarPresetClicked();
    shown<ItemPickerController>("pset").setSearch("");
    EXPECT_EQ(shown<ItemPickerController>("pset").checkedRow(), 3);
}

TEST_F(PresetScreensTest, listGrainModesByTheirPictures) {
    m_grainMode.pick(6);
    m_screens.grainModeClicked();
    auto& list = shown<ItemPickerController>("gmod");
    EXPECT_THAT(rows(list), ElementsAre("Static", "Linear", "Bounce", "Chaos", "Drunken",
                                        "Scrambly", "Split Linear checked"));
    EXPECT_EQ(list.data(list.index(2), ItemPickerController::imageRole), "Grain-Bounce.png");
    m_screens.itemPicked("Chaos", 3, "somewhere else");
    EXPECT_EQ(m_grainMode.index(), 6);
    list.choose(3);
    EXPECT_EQ(m_grainMode.spokenLabel(), "Grain Mode: Chaos");
    EXPECT_EQ(m_presentation.tag(), "");
}

TEST_F(PresetScreensTest, saveUnderANameThatIsFree) {
    m_screens.toolbarSaveClicked();
    auto& panel = shown<PresetSaveController>("psav");
    EXPECT_EQ(panel.presetName(), "Beta");
    const QString supply = "Please supply a name for your preset";
    const QString longest(1000, 'x');
    const struct {
        QString typed;
        bool canSave;
        QString explanation;
    } kCases[] = {
        {" \t\n\u2003", false, supply},
        {" sHiPPed one ", false, supply},
        {" bETA\n", true, "Your settings will overwrite the preset \"bETA\""},
        {" N\u0130w ", true, "Your settings will be saved to a new preset, \"N\u0130w\""},
        {longest, true, "Your settings will be saved to a new preset, \"" + longest + '"'},
        {longest + 'x', false, "This name is longer than 1000 bytes; please choose another one."},
        {"a\nb", false, "This name is with control characters; please choose another one."},
    };
    for (const auto& row : kCases) {
        panel.textChanged(row.typed);
        EXPECT_EQ(panel.canSave(), row.canSave) << qPrintable(row.typed);
        EXPECT_EQ(panel.explanation(), row.explanation);
    }
    panel.performSave();
    EXPECT_EQ(m_store.presets().size(), 4u);

    // A store that cannot be written: the panel keeps everything for another attempt.
    const QString name =
        QString::fromUtf8("  \xf0\x9f\x8e\xb9 \xd7\xa9\xd7\x9c ") + QString(200, 'n');
    const std::string lock = m_folder.file(".presets.lock");
    std::filesystem::remove(lock);
    std::filesystem::create_directory(lock);
    panel.textChanged(name);
    panel.performSave();
    EXPECT_TRUE(panel.failed());
    EXPECT_THAT(panel.explanation().toStdString(), HasSubstr("could not be saved: " + lock));
    EXPECT_EQ(&shown<PresetSaveController>("psav"), &panel);
    std::filesystem::remove(lock);
    panel.performSave();
    EXPECT_EQ(m_presentation.tag(), "");
    EXPECT_EQ(m_settings.pickerTitle(), name.trimmed().toStdString());
    EXPECT_TRUE(m_store.find(m_settings.pickerTitle()));
    EXPECT_TRUE(m_settings.canDelete());
}

TEST_F(PresetScreensTest, deleteOnlyWhatWasAskedAbout) {
    m_screens.toolbarPresetClicked();
    m_screens.toolbarDeleteClicked();
    EXPECT_EQ(m_presentation.tag(), "");
    EXPECT_EQ(m_alert.tag(), fourCC("pset"));
    EXPECT_EQ(m_alert.title(), "Delete Preset");
    EXPECT_EQ(m_alert.message(), "This will permanently delete the preset, \"Beta\"");
    EXPECT_EQ(m_alert.cancel() + m_alert.other(), "CancelDelete");
    EXPECT_TRUE(m_screens.hasPresetWithName("beta"));
    EXPECT_TRUE(m_alert.dismiss());
    EXPECT_FALSE(m_alert.dismiss());
    EXPECT_EQ(m_store.presets().size(), 4u);

    m_screens.toolbarDeleteClicked();
    m_bar->next();  // a protected one
    m_alert.clickedButtonAtIndex(1);
    m_screens.toolbarDeleteClicked();
    EXPECT_FALSE(m_alert.shown());
    EXPECT_EQ(m_store.presets().size(), 4u);

    m_bar->previous();
    m_settings.modify();
    m_screens.toolbarDeleteClicked();
    m_alert.clickedButtonAtIndex(1);
    EXPECT_FALSE(PresetStore(m_folder.file("presets.plist"), "", {}).find("beta"));
    EXPECT_EQ(m_settings.pickerTitle(), "Élan");  // the last by the order of the keys
    EXPECT_FALSE(m_settings.isModified());

    const std::string lock = m_folder.file(".presets.lock");
    std::filesystem::remove(lock);
    std::filesystem::create_directory(lock);
    m_screens.toolbarDeleteClicked();
    m_alert.clickedButtonAtIndex(1);
    EXPECT_THAT(m_told, ElementsAre(HasSubstr("cannot write")));
    EXPECT_TRUE(m_store.find("élan"));
}

TEST(PresentationTest, showsOneAtATime) {
    int announced = 0;
    const auto token = NotificationCentre::defaultCentre().addObserver("com.quaddle.popover",
                                                                       [&] { ++announced; });
    Presentation presentation;
    int cancelled = 0;
    const auto showSheet = [&](std::uint32_t tag) {
        presentation.presentSheet(tag, &presentation, [&] { ++cancelled; });
    };
    EXPECT_FALSE(presentation.dismiss());
    EXPECT_TRUE(presentation.canPresent(fourCC("gmod")));
    presentation.present(fourCC("gmod"), &presentation);
    EXPECT_EQ(announced, 1);
    EXPECT_FALSE(presentation.canPresent(fourCC("gmod")));
    EXPECT_EQ(presentation.content(), &presentation);
    EXPECT_TRUE(presentation.canPresent(fourCC("psav")));
    EXPECT_EQ(presentation.tag(), "");

    showSheet(fourCC("wave"));
    EXPECT_FALSE(presentation.canPresent(fourCC("wave")));
    EXPECT_EQ(presentation.tag(), "wave");
    EXPECT_EQ(cancelled, 0);
    EXPECT_TRUE(presentation.canPresent(fourCC("pset")));
    EXPECT_EQ(cancelled, 1);
    EXPECT_EQ(presentation.tag(), "");
    showSheet(fourCC("wave"));
    presentation.finish();
    EXPECT_EQ(cancelled, 1);
    NotificationCentre::defaultCentre().removeObserver(token);
}
