import QtQuick
import Ombrix.Views

/// The sound in use, with the microphone beside it and, over it, one that is on its way.
Panel {
    id: root

    required property OmbrixViewController controller
    readonly property WaveState wave: controller.wave

    MicrophoneButton {
        id: microphone
        anchors { left: parent.left; leftMargin: Theme.grid; top: parent.top; bottom: parent.bottom }
        take: root.controller.take
        width: 9 * Theme.grid
    }
    Rectangle {
        anchors { left: microphone.right; right: parent.right; top: parent.top; bottom: parent.bottom; margins: Theme.grid }
        border { color: Theme.line; width: Theme.hairline }
        clip: true
        color: Theme.ground
        radius: Theme.halfGrid

        WaveOutline {
            anchors { fill: parent; margins: Theme.hairline }
            colour: Theme.amber
            lineColour: Theme.line
            objectName: "waveView"
            opacity: root.wave.loading ? 0.3 : 1
            wave: root.wave

            Accessible.role: Accessible.Graphic
            Accessible.name: qsTr("Sound: %1").arg(root.wave.name)
        }
        Words {
            color: Theme.creamDim
            font.pixelSize: Theme.labelSize
            text: root.wave.name
            width: parent.width - 2 * x
            x: Theme.grid
            y: Theme.halfGrid
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
