import QtQuick
import Ombrix.Views

/// A row with a switch.
SwitchControl {
    height: 6 * Theme.grid
    width: parent.width - 4 * Theme.grid
    x: 2 * Theme.grid
}
