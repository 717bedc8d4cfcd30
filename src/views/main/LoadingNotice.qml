import QtQuick
import Ombrix.Views

/// How far the sound that is on its way has come, and the way to stay with the present one.
Item {
    id: root

    required property WaveState wave

    implicitHeight: words.height + Theme.grid + bar.height + Theme.grid

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
        text: qsTr("Loading %1").arg(root.wave.loadingName)
    }
    ProgressLine {
        id: bar
        anchors { left: parent.left; right: cancel.left; rightMargin: 2 * Theme.grid; top: words.bottom; topMargin: Theme.grid }
        progress: root.wave.progress
    }
    PushButton {
        id: cancel
        anchors { right: parent.right; verticalCenter: parent.verticalCenter }
        objectName: "cancelLoadingButton"
        text: qsTr("Cancel")
        onClicked: root.wave.cancel()
    }
}
