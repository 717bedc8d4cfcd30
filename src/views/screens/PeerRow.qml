import QtQuick
import Ombrix.Views

/// Somebody in the network, and what can be done about them.
Item {
    id: root

    required property var peer
    property string action: ""
    /// A second thing; empty: none.
    property string otherAction: ""
    signal asked
    signal otherAsked

    height: 6 * Theme.grid

    Column {
        anchors { left: parent.left; leftMargin: 2 * Theme.grid; right: buttons.left; rightMargin: Theme.grid; verticalCenter: parent.verticalCenter }

        Words {
            text: root.peer.name
            width: parent.width
        }
        Words {
            color: Theme.creamDim
            font.pixelSize: Theme.labelSize
            text: root.peer.address
            visible: text !== root.peer.name
            width: parent.width
        }
    }
    Row {
        id: buttons
        anchors { right: parent.right; rightMargin: Theme.grid; verticalCenter: parent.verticalCenter }
        spacing: Theme.halfGrid

        PushButton {
            objectName: root.objectName + "Other"
            spoken: text + " " + root.peer.name
            text: root.otherAction
            visible: text !== ""
            onClicked: root.otherAsked()
        }
        PushButton {
            objectName: root.objectName + "Button"
            spoken: text + " " + root.peer.name
            text: root.action
            onClicked: root.asked()
        }
    }
    Rectangle {
        anchors { bottom: parent.bottom; left: parent.left; leftMargin: 2 * Theme.grid; right: parent.right }
        color: Theme.line
        height: Theme.hairline
    }
}
