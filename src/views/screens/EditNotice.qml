import QtQuick
import Ombrix.Views

/// How far the edit that is under way has come, and the way to give it up.
Item {
    id: root

    required property WaveEditor editor

    implicitHeight: words.height + 2 * Theme.grid + bar.height

    // The sound of before lies under it.
    Rectangle {
        anchors { fill: parent; margins: -2 * Theme.grid }
        border { color: Theme.line; width: Theme.hairline }
        color: Theme.panel
        radius: Theme.panelRadius
    }
    Words {
        id: words
        anchors { left: parent.left; right: cancel.left; rightMargin: 2 * Theme.grid }
        text: root.editor.busyText
    }
    ProgressLine {
        id: bar
        anchors { left: parent.left; right: cancel.left; rightMargin: 2 * Theme.grid; top: words.bottom; topMargin: Theme.grid }
        progress: root.editor.progress
    }
    PushButton {
        id: cancel
        anchors { right: parent.right; verticalCenter: parent.verticalCenter }
        objectName: "cancelEditButton"
        text: qsTr("Cancel")
        onClicked: root.editor.cancel()
    }
}
