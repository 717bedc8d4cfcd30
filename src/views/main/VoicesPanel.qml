import QtQuick
import Ombrix.Views

/// Which voices sound, and the way to silence them all.
Panel {
    id: root

    required property OmbrixViewController controller

    heading: qsTr("Voices")

    VoiceLamps {
        id: lamps
        anchors { left: parent.left; leftMargin: 1.5 * Theme.grid; right: parent.right; rightMargin: 1.5 * Theme.grid }
        height: 2 * Theme.grid
        stages: root.controller.voices.stages
        y: 4 * Theme.grid
    }
    PushButton {
        anchors { bottom: parent.bottom; bottomMargin: Theme.halfGrid; horizontalCenter: parent.horizontalCenter }
        enabled: root.controller.voices.sounding
        objectName: "silenceButton"
        text: qsTr("Silence")
        spoken: qsTr("Silence all voices")
        width: parent.width - 3 * Theme.grid
        onClicked: root.controller.silence()
    }
}
