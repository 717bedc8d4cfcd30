import QtQuick
import Ombrix.Views

/// The sound in use, with the microphone beside it and, over it, one that is on its way.
Panel {
    id: root

    required property OmbrixViewController controller
    readonly property WaveState wave: controller.wave

    MicrophoneButton {
        id: microphone
        anchors { left: parent.left; top: parent.top; bottom: parent.bottom; margins: Theme.grid }
        take: root.controller.take
        width: 9 * Theme.grid
    }
    Rectangle {
        anchors { left: microphone.right; right: parent.right; top: parent.top; bottom: parent.bottom; margins: Theme.grid }
        border { color: Theme.line; width: Theme.hairline }
        clip: true
        color: Theme.ground
        radius: Theme.halfGrid

        SoundView {
            anchors { fill: parent; margins: Theme.hairline }
            controller: root.controller
            names: "wave"
            enabled: !root.controller.take.recording
        }
        Rectangle {
            color: Theme.ground
            height: name.height
            opacity: 0.7
            radius: Theme.halfGrid
            visible: name.text !== ""
            width: name.width + Theme.grid
            x: name.x - Theme.halfGrid
            y: name.y
        }
        Words {
            id: name
            color: Theme.creamDim
            font.pixelSize: Theme.labelSize
            text: root.wave.name
            width: Math.min(implicitWidth, parent.width - 2 * x)
            x: Theme.grid
            y: Theme.halfGrid
        }
        PushButton {
            anchors { right: parent.right; rightMargin: Theme.halfGrid; top: parent.top }
            objectName: "editButton"
            picture: "edit.png"
            spoken: qsTr("Edit the sound")
            text: qsTr("Edit")
            visible: !root.controller.take.recording && !root.wave.loading
            onClicked: root.controller.editClicked()
        }
        LoadingNotice {
            anchors.centerIn: parent
            visible: root.wave.loading
            wave: root.wave
            width: Math.min(48 * Theme.grid, parent.width - 4 * Theme.grid)
        }
        TakeDisplay {
            anchors { fill: parent; margins: Theme.hairline }
            take: root.controller.take
        }
    }
}
