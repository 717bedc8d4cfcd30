import QtQuick
import Ombrix.Views

/// The envelope's graph with what keys and screen readers need: Tab reaches it, left and right
/// choose one of its segments, up and down change that one.
ADSRView {
    id: editor

    implicitWidth: 400
    implicitHeight: 100
    opacity: enabled ? 1 : 0.4

    // What a screen reader takes for the slider's value: that of the chosen segment.
    readonly property real value: stageValue
    readonly property real minimumValue: 0
    readonly property real maximumValue: stageHighest

    Accessible.role: Accessible.Slider
    Accessible.name: qsTr("Envelope") + ". " + spokenText
    Accessible.focusable: true
    Accessible.onIncreaseAction: step(1, false)
    Accessible.onDecreaseAction: step(-1, false)

    Rectangle {
        // At least wide enough to be seen where a time is next to none.
        x: Math.max(0, Math.min(editor.stageFrame.x, editor.width - width))
        width: Math.max(Theme.grid, editor.stageFrame.width)
        height: editor.height
        visible: editor.activeFocus || editor.pressed
        color: editor.pressed ? Qt.alpha(Theme.cream, 0.1) : "transparent"
        border { width: editor.activeFocus ? 2 : 0; color: Theme.cream }
        radius: Theme.halfGrid
    }
}
