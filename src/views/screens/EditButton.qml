import QtQuick
import Ombrix.Views

/// A button of the editing sheet: its picture over its name.
PushButton {
    id: root

    required property string title

    implicitHeight: Math.max(Theme.touchTarget, 5 * Theme.grid + Theme.labelSize + 2 * Theme.halfGrid)
    plain: true
    spoken: title

    contentItem: Item {
        Picture {
            anchors { horizontalCenter: parent.horizontalCenter; top: parent.top; topMargin: Theme.grid + Theme.halfGrid }
            height: implicitHeight
            name: root.picture
            width: implicitWidth
        }
        Words {
            anchors { bottom: parent.bottom; bottomMargin: Theme.grid; left: parent.left; right: parent.right }
            color: root.textColor
            font.pixelSize: Theme.labelSize
            horizontalAlignment: Text.AlignHCenter
            text: root.title
        }
    }
    leftPadding: Theme.halfGrid / 2
    rightPadding: Theme.halfGrid / 2
}
