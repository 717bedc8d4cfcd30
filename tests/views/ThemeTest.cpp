#include <gtest/gtest.h>

#include "ShownItem.h"

TEST(ThemeTest, isKnownToEveryItem) {
    ShownItem shown(
        ShownItem::fromQml("import QtQuick; import Ombrix.Views; Rectangle { width: 40; height: "
                           "20; color: Theme.amber }"));
    EXPECT_EQ(shown.picture().pixelColor(20, 10), QColor(255, 204, 51));
}
