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

        WaveView2 {
            id: view
            anchors { fill: parent; margins: Theme.hairline }
            backgroundBottom: Theme.ground
            backgroundTop: Theme.waveTop
            headColour: Theme.readHead
            hearing: root.controller.hearing
            enabled: !root.controller.take.recording
            interactions: 7
            labelColour: Theme.creamDim
            lineColour: Theme.line
            motion: Theme.motion
            objectName: "waveView"
            opacity: root.wave.loading ? 0.3 : 1
            playHeadColour: Theme.cream
            sampleColour: Theme.cream
            voices: root.controller.voices
            wave: root.wave
            waveColour: Theme.amber

            Accessible.role: Accessible.Graphic
            Accessible.name: qsTr("Sound: %1").arg(root.wave.name)
            Accessible.description: qsTr("A tap plays from there, a held finger scrubs. Arrow keys scroll, plus and minus zoom, Home shows all.")
            Accessible.focusable: true
            Accessible.onDecreaseAction: view.zoomBy(1 / Math.SQRT2)
            Accessible.onIncreaseAction: view.zoomBy(Math.SQRT2)
            Accessible.onScrollLeftAction: view.scrollBy(-view.width / 2)
            Accessible.onScrollRightAction: view.scrollBy(view.width / 2)
        }
        WaveRange {
            anchors.fill: view
            objectName: "waveRange"
            selection: root.controller.selection
            view: view
            visible: !root.wave.loading
        }
        Rectangle {
            anchors { fill: view }
            border { color: Theme.cream; width: Theme.focusLine }
            color: "transparent"
            radius: Theme.halfGrid
            visible: view.focusVisible
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
