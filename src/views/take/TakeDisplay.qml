import QtQuick
import Ombrix.Views

/// What a take sounds like while it is recorded: outline, input meter, remaining time. Lies over the
/// wave and is seen only then.
Rectangle {
    id: root

    required property TakeScreen take

    color: Theme.ground
    objectName: "takeDisplay"
    radius: Theme.halfGrid
    visible: take.recording

    Accessible.role: Accessible.Grouping
    Accessible.name: qsTr("Recording")

    Rectangle {
        anchors { left: outline.left; right: outline.right; verticalCenter: outline.verticalCenter }
        color: Theme.line
        height: Theme.hairline
    }
    TakeOutlineView {
        id: outline
        anchors { left: parent.left; right: meter.left; top: parent.top; bottom: parent.bottom; margins: Theme.grid }
        color: Theme.amber
        take: root.take
    }
    Words {
        anchors { right: meter.left; rightMargin: 2 * Theme.grid; top: parent.top; topMargin: Theme.grid }
        color: Theme.creamDim
        font.pixelSize: Theme.labelSize
        text: root.take.remaining
    }
    Rectangle {
        id: meter
        anchors { right: parent.right; top: parent.top; bottom: parent.bottom; margins: Theme.grid }
        border { color: Theme.line; width: Theme.hairline }
        clip: true
        color: Theme.ground
        radius: Theme.halfGrid
        width: 2 * Theme.grid

        Accessible.role: Accessible.ProgressBar
        Accessible.name: qsTr("Input level")

        // 60 decibels from bottom to top.
        Rectangle {
            readonly property real decibels: 20 * Math.log(Math.max(0.001, root.take.level)) / Math.LN10
            anchors { bottom: parent.bottom; left: parent.left; right: parent.right; margins: Theme.hairline * 2 }
            color: root.take.level >= 0.99 ? Theme.alert : Theme.amber
            height: (parent.height - 4 * Theme.hairline) * (1 + decibels / 60)
            radius: Theme.halfGrid / 2
        }
    }
}
