import QtQuick
import Ombrix.Views

/// The overview of the keyboard, as the main window shows it.
OverviewScroller {
    id: overview
    objectName: "miniKeyboard"
    implicitHeight: 40
    activeFocusOnTab: true

    Accessible.role: Accessible.Slider
    Accessible.name: qsTr("Visible part of the keyboard")
    Accessible.focusable: true
    Accessible.onIncreaseAction: overview.scrollByOctaves(1)
    Accessible.onDecreaseAction: overview.scrollByOctaves(-1)

    FocusLine {
        anchors.margins: 0
        visible: overview.activeFocus
    }
}
