import QtQuick
import Ombrix.Views

/// Which voices sound, and the way to silence them all.
Panel {
    id: root

    required property OmbrixViewController controller
    readonly property int contentWidth: Math.min(width - 3 * Theme.grid, 36 * Theme.grid)

    heading: qsTr("Voices")

    VoiceLamps {
        id: lamps
        anchors.horizontalCenter: parent.horizontalCenter
        height: 2 * Theme.grid
        stages: root.controller.voices.stages
        width: root.contentWidth
        y: 4 * Theme.grid
    }
    PushButton {
        anchors { bottom: parent.bottom; bottomMargin: Theme.halfGrid; horizontalCenter: parent.horizontalCenter }
        enabled: root.controller.voices.sounding
        objectName: "silenceButton"
        text: qsTr("Silence")
        spoken: qsTr("Silence all voices")
        width: root.contentWidth
        onClicked: root.controller.silence()
    }
}
