import QtQuick
import QtQuick.Templates as T
import Ombrix.Views

/// A row of a list: a picture, a text and a quiet note, and a check mark on the one that is chosen.
T.ItemDelegate {
    id: root

    /// A picture of the artwork; empty: none.
    property string picture: ""
    /// At the right, smaller.
    property string note: ""
    property bool chosen: false
    property bool destructive: false

    implicitHeight: Math.max(6 * Theme.grid, image.implicitHeight + Theme.grid)
    implicitWidth: parent ? parent.width : 40 * Theme.grid
    leftPadding: 2 * Theme.grid
    rightPadding: 2 * Theme.grid
    opacity: enabled ? 1 : Theme.disabledOpacity
    focusPolicy: Qt.StrongFocus
    hoverEnabled: true

    Accessible.role: Accessible.ListItem
    Accessible.name: note === "" ? text : text + ", " + note
    Accessible.checked: chosen
    Accessible.onPressAction: clicked()
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()

    background: Rectangle {
        color: root.down ? Theme.amberDeep
                         : root.highlighted || root.hovered ? Theme.hovered : "transparent"

        Rectangle {
            anchors { bottom: parent.bottom; left: parent.left; leftMargin: root.leftPadding; right: parent.right }
            color: Theme.line
            height: Theme.hairline
        }
        Rectangle {
            anchors.fill: parent
            border { color: Theme.cream; width: Theme.focusLine }
            color: "transparent"
            radius: Theme.buttonRadius
            visible: root.visualFocus
        }
    }

    contentItem: Item {
        Picture {
            id: image
            anchors.verticalCenter: parent.verticalCenter
            name: root.picture
        }
        Words {
            anchors {
                left: image.right
                leftMargin: root.picture === "" ? 0 : 2 * Theme.grid
                right: side.left
                rightMargin: Theme.grid
                verticalCenter: parent.verticalCenter
            }
            color: root.destructive ? Theme.alert : root.chosen ? Theme.amber : Theme.cream
            text: root.text
        }
        Row {
            id: side
            anchors { right: parent.right; verticalCenter: parent.verticalCenter }
            spacing: Theme.grid

            Words {
                anchors.verticalCenter: parent.verticalCenter
                color: Theme.creamDim
                font.pixelSize: Theme.labelSize
                text: root.note
                width: Math.min(implicitWidth, root.width / 2)
            }
            Picture {
                anchors.verticalCenter: parent.verticalCenter
                name: "check.png"
                visible: root.chosen
            }
        }
    }
}
