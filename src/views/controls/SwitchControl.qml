import QtQuick
import QtQuick.Templates as T
import Ombrix.Views

/// A switch with its name at its left. It shows `on`, and asks for the other state.
T.AbstractButton {
    id: root

    property bool on: false
    signal asked(bool on)

    implicitHeight: Theme.touchTarget
    implicitWidth: 2 * Theme.grid + name.implicitWidth + track.width
    opacity: enabled ? 1 : Theme.disabledOpacity
    focusPolicy: Qt.StrongFocus
    onClicked: asked(!on)

    Accessible.role: Accessible.CheckBox
    Accessible.name: text
    Accessible.checkable: true
    Accessible.checked: on
    Accessible.onPressAction: clicked()
    Accessible.onToggleAction: clicked()

    Words {
        id: name
        anchors { left: parent.left; right: track.left; rightMargin: 2 * Theme.grid; verticalCenter: parent.verticalCenter }
        text: root.text
    }
    Rectangle {
        id: track
        anchors { right: parent.right; verticalCenter: parent.verticalCenter }
        border { color: root.on ? Theme.amber : Theme.creamDim; width: Theme.hairline }
        color: root.on ? Theme.amberDim : Theme.ground
        height: 3 * Theme.grid
        radius: height / 2
        width: 6 * Theme.grid

        Rectangle {
            color: root.on ? Theme.amber : Theme.creamDim
            height: parent.height - Theme.grid
            radius: height / 2
            scale: root.down ? 1.25 : 1
            width: height
            x: root.on ? parent.width - width - Theme.halfGrid : Theme.halfGrid
            y: Theme.halfGrid
            Behavior on x { NumberAnimation { duration: Theme.controlTime; easing.type: Easing.OutCubic } }
        }
        FocusLine { radius: height / 2; visible: root.visualFocus }
    }
}
