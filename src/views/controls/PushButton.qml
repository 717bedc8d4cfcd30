import QtQuick
import QtQuick.Templates as T
import Ombrix.Views

/// A button with a picture, a text or both. It is as high as a finger is wide, and looks lower.
T.Button {
    id: root

    /// A picture of the artwork, "save.png"; empty: none.
    property string picture: ""
    /// What screen readers say, where the text does not.
    property string spoken: text
    /// Without a face of its own until it is touched.
    property bool plain: false
    /// The one that is meant to be pressed.
    property bool primary: false
    /// What it does cannot be undone.
    property bool destructive: false
    /// With the gap to the text.
    readonly property real pictureWidth: image.visible ? image.implicitWidth + (text === "" ? 0 : row.spacing) : 0
    property color textColor: primary ? Theme.ground : destructive ? Theme.alert : Theme.cream

    implicitHeight: Theme.touchTarget
    implicitWidth: Math.max(Theme.touchTarget, pictureWidth + words.implicitWidth + leftPadding + rightPadding)
    leftPadding: text === "" ? Theme.grid : Theme.grid + Theme.halfGrid
    rightPadding: leftPadding
    opacity: enabled ? 1 : Theme.disabledOpacity
    focusPolicy: Qt.StrongFocus
    hoverEnabled: true

    Accessible.role: Accessible.Button
    Accessible.name: spoken
    Accessible.onPressAction: clicked()
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()

    background: Item {
        Rectangle {
            anchors { fill: parent; topMargin: Theme.halfGrid; bottomMargin: Theme.halfGrid }
            border {
                color: root.down ? Theme.amber : Theme.line
                width: root.plain && !root.down ? 0 : Theme.hairline
            }
            color: root.primary ? (root.down ? Theme.amberDim : Theme.amber)
                                : root.down ? Theme.pressed
                                : root.hovered ? Theme.hovered
                                : root.plain ? "transparent" : Theme.panelRaised
            radius: Theme.buttonRadius

            FocusLine { visible: root.visualFocus }
        }
    }

    contentItem: Item {
        Row {
            id: row
            anchors.centerIn: parent
            spacing: Theme.grid

            Picture {
                id: image
                anchors.verticalCenter: parent.verticalCenter
                name: root.picture
                visible: name !== ""
            }
            Words {
                id: words
                anchors.verticalCenter: parent.verticalCenter
                color: root.textColor
                font.bold: root.primary
                text: root.text
                visible: text !== ""
                width: Math.min(implicitWidth, root.width - root.leftPadding - root.rightPadding - root.pictureWidth)
            }
        }
    }
}
