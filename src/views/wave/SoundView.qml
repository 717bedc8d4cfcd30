import QtQuick
import Ombrix.Views

/// The sound in use, in the looks of the screen, to be moved in, heard and selected.
Item {
    id: root

    required property OmbrixViewController controller
    property alias view: view
    readonly property WaveState wave: controller.wave

    Accessible.role: Accessible.Graphic
    Accessible.name: qsTr("Sound: %1").arg(wave.name)
    Accessible.description: qsTr("A tap plays from there, a held finger scrubs. Arrow keys scroll, plus and minus zoom, Home shows all.")
    Accessible.focusable: true

    WaveView2 {
        id: view
        anchors.fill: parent
        backgroundBottom: Theme.ground
        backgroundTop: Theme.waveTop
        headColour: Theme.readHead
        hearing: root.controller.hearing
        interactions: 7
        labelColour: Theme.creamDim
        lineColour: Theme.line
        motion: Theme.motion
        opacity: root.wave.loading ? 0.3 : 1
        playHeadColour: Theme.cream
        sampleColour: Theme.cream
        voices: root.controller.voices
        wave: root.wave
        waveColour: Theme.amber
    }
    Rectangle {
        anchors.fill: view
        border { color: Theme.cream; width: Theme.focusLine }
        color: "transparent"
        radius: Theme.halfGrid
        visible: view.focusVisible
    }
}
