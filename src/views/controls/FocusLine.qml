import QtQuick
import Ombrix.Views

/// Shows which control the keyboard steers. Fills its parent.
Rectangle {
    anchors { fill: parent; margins: -Theme.focusLine }
    border { color: Theme.cream; width: Theme.focusLine }
    color: "transparent"
    radius: Theme.buttonRadius + Theme.focusLine
}
