import QtQuick
import Ombrix.Views

/// The keyboard with its overview above it, played by touch, by mouse and from the computer's keys.
/// Who plays the notes connects to `keyboard`; who closes screens and silences, to `computerKeys`.
Item {
    id: piano
    property alias keyboard: keys
    property alias miniKeyboard: overview
    property alias computerKeys: typed
    property alias largeKeys: keys.largeKeys
    property alias showLabels: keys.showLabels

    implicitWidth: 1024
    implicitHeight: overview.implicitHeight + keys.height

    MiniKeyboard {
        id: overview
        anchors { left: parent.left; right: parent.right; top: parent.top }
        height: implicitHeight
        target: keys
    }

    ScrollingKeyboardView {
        id: keys
        objectName: "keyboard"
        anchors { left: parent.left; right: parent.right; top: overview.bottom }
        height: 229
        scrollTime: Theme.popoverTime
        overlay: Picture { name: "keyboard-overlay.png" }
    }

    ComputerKeys {
        id: typed
        target: keys
    }
}
