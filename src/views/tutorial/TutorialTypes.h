#pragma once

#include <QtQml/qqml.h>

#include "screens/iPadTutorialManager.h"

// A type's name begins with a capital in QML.
struct TutorialManagerForeign {
    Q_GADGET
    QML_FOREIGN(iPadTutorialManager)
    QML_NAMED_ELEMENT(TutorialManager)
    QML_UNCREATABLE("is given")
};

struct TutorialPageForeign {
    Q_GADGET
    QML_FOREIGN(iPadTutorialViewController)
    QML_VALUE_TYPE(tutorialPage)
};
