import QtQuick
import Ombrix.Views

/// The envelope, drawn and on dials.
Panel {
    id: root

    required property OmbrixViewController controller
    readonly property EnvelopeState envelope: controller.envelope

    heading: qsTr("Envelope")

    Rectangle {
        anchors { fill: editor; margins: -Theme.hairline }
        color: Theme.ground
        border { color: Theme.line; width: Theme.hairline }
        radius: Theme.halfGrid
    }
    EnvelopeEditor {
        id: editor
        anchors {
            left: parent.left; right: parent.right; top: parent.top; bottom: dials.top
            leftMargin: Theme.grid + Theme.halfGrid; rightMargin: Theme.grid + Theme.halfGrid
            topMargin: 3 * Theme.grid; bottomMargin: Theme.halfGrid
        }
        objectName: "adsrView"
        attack: root.envelope.attack
        decay: root.envelope.decay
        sustain: root.envelope.sustain
        releaseTime: root.envelope.releaseTime
        onAdsrViewUpdated: root.envelope.adsrViewUpdated(attack, decay, sustain, releaseTime)
    }
    // At the height of the dials beside the panel, each under its share of the graph.
    Row {
        id: dials
        anchors.horizontalCenter: parent.horizontalCenter
        y: parent.height - 108 + 2 * Theme.grid

        Repeater {
            model: ["adsrAttack", "adsrDecay", "adsrSustain", "adsrRelease"]
            ParameterColumn {
                required property string modelData
                dials: root.controller.dials
                key: modelData
                width: Math.min(20 * Theme.grid, Math.floor((root.width - Theme.grid) / 4))
            }
        }
    }
}
