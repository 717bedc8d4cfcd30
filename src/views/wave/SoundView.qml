import QtQuick
import Ombrix.Views

/// The sound in use, in the looks of the screen: to be moved in, heard and selected.
Item {
    id: root

    required property OmbrixViewController controller
    /// The parts are NAMESView and NAMESRange.
    required property string names
    readonly property WaveState wave: controller.wave

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
        objectName: root.names + "View"
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
        objectName: root.names + "Range"
        selection: root.controller.selection
        view: view
        visible: root.enabled && !root.wave.loading
    }
    Rectangle {
        anchors.fill: view
        border { color: Theme.cream; width: Theme.focusLine }
        color: "transparent"
        radius: Theme.halfGrid
        visible: view.focusVisible
    }
}
