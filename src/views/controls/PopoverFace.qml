import QtQuick
import Ombrix.Views

/// The face of a popover: its shadow, its arrow and its heading.
Item {
    id: root

    property int arrowSize: 0
    property real arrowX: 0
    property bool below: true
    property string heading: ""
    property int headingHeight: 0

    Repeater {
        model: 4
        Rectangle {
            required property int index
            anchors { fill: parent; margins: -2 * (index + 1); topMargin: -2 * index; bottomMargin: -2 * index - 6 }
            color: "black"
            opacity: 0.12
            radius: Theme.panelRadius + 2 * (index + 1)
        }
    }
    Rectangle {
        border { color: Theme.line; width: Theme.hairline }
        color: Theme.panelRaised
        height: root.arrowSize
        rotation: 45
        visible: root.arrowSize > 0
        width: root.arrowSize
        x: Math.max(Theme.panelRadius, Math.min(root.arrowX - width / 2, root.width - width - Theme.panelRadius))
        y: (root.below ? 0 : root.height) - height / 2
    }
    Rectangle {
        anchors.fill: parent
        border { color: Theme.line; width: Theme.hairline }
        color: Theme.panelRaised
        radius: Theme.panelRadius
    }
    // Hides the line between the face and its arrow.
    Rectangle {
        color: Theme.panelRaised
        height: Theme.hairline
        visible: root.arrowSize > 0
        width: root.arrowSize * 1.3
        x: Math.max(Theme.panelRadius, Math.min(root.arrowX - root.arrowSize / 2, root.width - root.arrowSize - Theme.panelRadius)) - root.arrowSize * 0.15
        y: root.below ? 0 : root.height - height
    }
    Words {
        font { bold: true; pixelSize: Theme.textSize }
        height: root.headingHeight
        horizontalAlignment: Text.AlignHCenter
        text: root.heading
        width: parent.width - 4 * Theme.grid
        x: 2 * Theme.grid
    }
    Rectangle {
        color: Theme.line
        height: Theme.hairline
        visible: root.heading !== ""
        width: parent.width
        y: root.headingHeight - height
    }
}
