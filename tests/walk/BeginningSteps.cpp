#include "Steps.h"
#include "screens/TutorialPages.h"

void followTheTutorial(Walk& walk) {
    iPadTutorialManager& tutorial = *walk.controller().tutorial();
    walk.instrument().tap("helpButton");
    for (std::size_t page = 1; page <= tutorialPages().size(); ++page) {
        walk.show("tutorial " + std::to_string(page), [&] {
            walk.instrument().pass(0.3);
            walk.expect("its page is shown", tutorial.popover());
        });
        walk.instrument().tap("tutorialNextButton");
    }
    walk.expectSoon("the tutorial ends", [&] { return !tutorial.popover(); });
}

void startAgain(Walk& walk) {
    const auto state = [&] {
        std::vector<QString> said{walk.controller().presetBar()->title(),
                                  walk.controller().grainMode()->name()};
        for (const Parameter& row : kParameters) {
            if (!row.dialName.empty())
                said.push_back(walk.controller().dials()->text(
                    row.id, walk.controller().dials()->dial(row.id).value(), false));
        }
        return said;
    };
    const std::vector<QString> before = state();
    const bool labels = walk.controller().settings()->showLabels();
    walk.step("started again", Walk::Effect::stays, [&] {
        walk.close();
        walk.open();
        walk.expect("every dial is where it was", state() == before);
        walk.expect("the settings are kept", walk.controller().settings()->showLabels() == labels);
        walk.expect("nothing is taken for a crash", !walk.controller().alert()->shown());
    });
}
