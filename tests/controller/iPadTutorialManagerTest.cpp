#include "screens/iPadTutorialManager.h"

#include <gmock/gmock.h>

#include "ScratchFolder.h"
#include "defaults/UserDefaults.h"
#include "log/Log.h"

namespace {

constexpr auto kKey = "some-progress";
constexpr auto kView = TutorialAnchor::Kind::view;
const std::vector<TutorialItem> kItems = {{"Sing.", {TutorialAnchor::Kind::barButtonItem, "mouth"}},
                                          {"Play.", {kView, "keys"}},
                                          {"Listen.", {kView, "ears"}}};

class iPadTutorialManagerTest : public testing::Test {
  protected:
    /// A manager of a new run of the program.
    std::unique_ptr<iPadTutorialManager> start(std::vector<TutorialItem> items = kItems) {
        defaults = std::make_unique<UserDefaults>(folder.file("ombrix-synth"));
        auto manager = std::make_unique<iPadTutorialManager>(std::move(items), kKey, *defaults);
        QObject::connect(manager.get(), &iPadTutorialManager::ended, [this] { ++ends; });
        return manager;
    }

    ScratchFolder folder;
    std::unique_ptr<UserDefaults> defaults;
    int ends = 0;
};

std::string shown(const iPadTutorialManager& manager) {
    if (!manager.popover())
        return "nothing";
    const auto& page = manager.page();
    return (manager.anchorName() + ": " + page.message() + " " + page.buttonTitle()).toStdString();
}

}  // namespace

TEST_F(iPadTutorialManagerTest, showsEachPageOnceAcrossStarts) {
    auto manager = start();
    EXPECT_EQ(shown(*manager), "nothing");
    manager->show();
    EXPECT_EQ(shown(*manager), "mouth: Sing. Next");
    manager->page().next();
    EXPECT_EQ(shown(*manager), "keys: Play. Next");
    manager.reset();

    manager = start();
    manager->show();
    EXPECT_EQ(shown(*manager), "ears: Listen. Done");
    EXPECT_EQ(ends, 0);
    manager->page().next();
    EXPECT_EQ(shown(*manager), "nothing");
    EXPECT_EQ(ends, 1);
    manager.reset();

    manager = start();
    manager->show();
    EXPECT_EQ(shown(*manager), "nothing");
    EXPECT_EQ(ends, 2);
    manager->restart();
    EXPECT_EQ(shown(*manager), "mouth: Sing. Next");
    EXPECT_EQ(defaults->integer(kKey), 1);
}

TEST_F(iPadTutorialManagerTest, hidesForAnotherPopoverAndGoesOnLater) {
    auto manager = start();
    manager->show();
    NotificationCentre::defaultCentre().post("com.quaddle.popover");
    EXPECT_EQ(shown(*manager), "nothing");
    EXPECT_EQ(ends, 0);
    manager->show();
    EXPECT_EQ(shown(*manager), "keys: Play. Next");
    manager.reset();
    NotificationCentre::defaultCentre().post("com.quaddle.popover");
}

TEST_F(iPadTutorialManagerTest, endsAtAnUnknownAnchor) {
    auto items = kItems;
    items[1].anchor = {TutorialAnchor::Kind::unknown, "tail"};
    auto manager = start(items);
    manager->show();
    manager->next();
    EXPECT_EQ(shown(*manager), "nothing");
    EXPECT_EQ(ends, 1);
    EXPECT_THAT(Log::lines(), testing::Contains("Tutorial targetted unknown thing tail"));
    EXPECT_EQ(defaults->integer(kKey), 2) << "it is not tried again";
}

TEST_F(iPadTutorialManagerTest, survivesAnyStoredProgress) {
    for (const std::int64_t stored : {std::int64_t(-3), std::int64_t(1) << 60}) {
        UserDefaults(folder.file("ombrix-synth")).set(kKey, stored);
        auto manager = start();
        manager->show();
        EXPECT_EQ(manager->popover(), stored < 0);
    }
    start({})->show();
    EXPECT_EQ(ends, 2);
}
