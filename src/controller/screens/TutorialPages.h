#pragma once

#include <vector>

#include "screens/TutorialItem.h"

/// User default: index of the next page.
inline constexpr auto kTutorialProgressKey = "tutorial-progress";

/// What a newcomer is told at the first start, in order and in the program's language.
std::vector<TutorialItem> tutorialPages();
