#pragma once

#include <QString>

/// What a tutorial's page points at. Only the window knows what stands behind the name.
struct TutorialAnchor {
    enum class Kind { unknown, barButtonItem, view };
    Kind kind = Kind::unknown;
    QString objectName;
};

struct TutorialItem {
    QString message;  // translated
    TutorialAnchor anchor;
};
