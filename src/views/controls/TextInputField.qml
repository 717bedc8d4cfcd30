import QtQuick
import QtQuick.Templates as T
import Ombrix.Views

/// A line to type into, with a picture in front where it says what for.
T.TextField {
    id: root

    property string picture: ""

    implicitHeight: Theme.touchTarget
    implicitWidth: 30 * Theme.grid
    leftPadding: picture === "" ? Theme.grid + Theme.halfGrid : 5 * Theme.grid
    rightPadding: Theme.grid + Theme.halfGrid
    color: Theme.cream
    font { family: Theme.family; pixelSize: Theme.textSize }
    opacity: enabled ? 1 : Theme.disabledOpacity
    placeholderTextColor: Theme.creamDim
    selectByMouse: true
    selectedTextColor: Theme.ground
    selectionColor: Theme.amber
    verticalAlignment: TextInput.AlignVCenter

    Accessible.role: Accessible.EditableText
    Accessible.name: placeholderText

    background: Rectangle {
        border {
            color: root.activeFocus ? Theme.amber : Theme.line
            width: root.activeFocus ? Theme.focusLine : Theme.hairline
        }
        color: Theme.ground
        radius: Theme.buttonRadius
    }

    Picture {
        anchors.verticalCenter: parent.verticalCenter
        name: root.picture
        opacity: 0.7
        x: Theme.grid
    }
    Words {
        anchors { fill: parent; leftMargin: root.leftPadding; rightMargin: root.rightPadding }
        color: root.placeholderTextColor
        text: root.placeholderText
        visible: root.length === 0 && root.preeditText === ""
    }
}
